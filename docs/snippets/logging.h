#pragma once

namespace Snippets {

void keepSecretsOutOfTheLog();

} // namespace Snippets
