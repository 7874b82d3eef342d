#include "login/casform.h"

#include "fuzz/support.h"

using namespace NelvoPlugin;

//! The page with the sign-in form, and the page that answers the form.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray page = Fuzz::bytesOf(data, size);
    CasFormValues values;
    if (parseLoginArgs(page, values))
        Fuzz::require(
            loginForm(values, QStringLiteral("lina"), QStringLiteral("md5")).contains("&productId=86"));
    parsePostResult(page);
    return 0;
}
