#include "updater/bzip2entry.h"

#include <bzlib.h>
#include <quazip/quazip.h>
#include <quazip/quazipfile.h>
#include <quazip/quazipfileinfo.h>

#include <QByteArray>

namespace {

//! \brief The unpacked content of a bzip2 entry, read piece by piece.
//!
//! If a piece contains damaged data, the whole piece is lost, as with QuaZip's own entries.
class Bzip2Entry final : public QIODevice
{
public:
    explicit Bzip2Entry(QuaZip& zip) : m_zip(zip), m_packed(&zip), m_input(InputSize, '\0') {}
    ~Bzip2Entry() override
    {
        if (isOpen())
            BZ2_bzDecompressEnd(&m_stream);
    }

    bool open(OpenMode mode) override
    {
        QuaZipFileInfo64 info;
        if (!m_zip.getCurrentFileInfo(&info) || !m_packed.open(ReadOnly, nullptr, nullptr, true) ||
            BZ2_bzDecompressInit(&m_stream, 0, 0) != BZ_OK) {
            return false;
        }
        m_rest = info.uncompressedSize;
        return QIODevice::open(mode | Unbuffered);
    }
    bool isSequential() const override { return true; }

protected:
    qint64 readData(char* data, qint64 maxSize) override
    {
        const auto wanted = static_cast<unsigned>(qMin(static_cast<quint64>(maxSize), m_rest));
        m_stream.next_out = data;
        m_stream.avail_out = wanted;
        int result = BZ_OK;
        while (result == BZ_OK && m_stream.avail_out > 0) {
            result = BZ2_bzDecompress(&m_stream);
            if (result == BZ_OK && m_stream.avail_out > 0 && !refill())
                return -1;
        }
        if (result != BZ_OK && result != BZ_STREAM_END)
            return -1;
        m_rest -= wanted - m_stream.avail_out;
        return wanted - m_stream.avail_out;
    }
    qint64 writeData(const char* /*data*/, qint64 /*maxSize*/) override { return -1; }

private:
    static constexpr int InputSize = 16 * 1024;

    //! Reads more input when all of it is used. Returns false at the end.
    bool refill()
    {
        const qint64 size = m_packed.read(m_input.data(), m_input.size());
        m_stream.next_in = m_input.data();
        m_stream.avail_in = static_cast<unsigned>(qMax<qint64>(size, 0));
        return size > 0;
    }

    QuaZip& m_zip;
    QuaZipFile m_packed;
    QByteArray m_input;
    bz_stream m_stream{};
    //! Remaining bytes, according to the package.
    quint64 m_rest = 0;
};

} // namespace

std::unique_ptr<QIODevice> bzip2Entry(QuaZip& zip)
{
    return std::make_unique<Bzip2Entry>(zip);
}
