// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "environment/SafeFile.h"

#include <QFile>
#include <QSaveFile>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

bool writeFileSafely(const QString &path, const QByteArray &bytes)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    // commit() alone reports success for bytes that never left the buffer.
    const bool written = file.write(bytes) == bytes.size() && file.flush() && file.error() == QFile::NoError;
    if (!written)
        file.cancelWriting();
    return file.commit() && written;
}

namespace
{

class Descriptor
{
public:
    explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
    ~Descriptor()
    {
        if (descriptor_ >= 0)
            close(descriptor_);
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    int get() const { return descriptor_; }

private:
    int descriptor_;
};

// Reads one byte more than allowed, so that a file that grows meanwhile is recognised.
bool readUpTo(int descriptor, qint64 maxSize, QByteArray *content)
{
    char buffer[16384];
    while (content->size() <= maxSize) {
        const ssize_t count = read(descriptor, buffer, sizeof buffer);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return count == 0;
        content->append(buffer, int(count));
    }
    return false;
}

} // namespace

ReadResult readFile(const QString &path, qint64 maxSize, QByteArray *content)
{
    content->clear();
    const Descriptor file(open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (file.get() < 0)
        return errno == ENOENT ? ReadResult::Missing : ReadResult::Refused;
    struct stat entry = {};
    if (fstat(file.get(), &entry) != 0 || !S_ISREG(entry.st_mode) || entry.st_size > maxSize)
        return ReadResult::Refused;
    if (readUpTo(file.get(), maxSize, content))
        return ReadResult::Read;
    content->clear();
    return ReadResult::Refused;
}

std::optional<QByteArray> readFile(const QString &path, qint64 maxSize)
{
    QByteArray content;
    if (readFile(path, maxSize, &content) != ReadResult::Read)
        return std::nullopt;
    return content;
}
