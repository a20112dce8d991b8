#include "rom/rom_file.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
QString SystemErrorText(int error) { return QString::fromLocal8Bit(std::strerror(error)); }
}

bool OpenRomFile(RomFile& rom, const QString& fileName, QString& errorText)
{
    const QByteArray path = fileName.toLocal8Bit();
    bool writable = true;
    int fd = ::open(path.constData(), O_RDWR | O_CLOEXEC);
    if (fd < 0 && (errno == EACCES || errno == EROFS || errno == EPERM)) {
        writable = false;
        fd = ::open(path.constData(), O_RDONLY | O_CLOEXEC);
    }
    if (fd < 0) {
        errorText = SystemErrorText(errno);
        return false;
    }
    struct stat info {};
    if (::fstat(fd, &info) != 0 || !S_ISREG(info.st_mode)) {
        errorText = QStringLiteral("It is not a regular file.");
        ::close(fd);
        return false;
    }
    CloseRomFile(rom);
    rom.fd = fd;
    rom.writable = writable;
    rom.fileName = fileName;
    return true;
}

void CloseRomFile(RomFile& rom)
{
    if (rom.fd >= 0)
        ::close(rom.fd);
    rom = RomFile{};
}

bool IsRomOpen(const RomFile& rom) { return rom.fd >= 0; }

int64_t RomLength(const RomFile& rom)
{
    struct stat info {};
    if (rom.fd < 0 || ::fstat(rom.fd, &info) != 0)
        return -1;
    return int64_t(info.st_size);
}

int64_t ReadRomBytes(const RomFile& rom, int64_t position, void* buffer, int64_t count)
{
    if (rom.fd < 0 || position < 0 || count <= 0)
        return 0;
    auto* out = static_cast<char*>(buffer);
    int64_t done = 0;
    while (done < count) {
        const ssize_t got = ::pread(rom.fd, out + done, size_t(count - done), off_t(position + done));
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            break;
        done += got;
    }
    return done;
}

bool WriteRomBytes(RomFile& rom, int64_t position, const void* data, int64_t count, QString& errorText)
{
    if (rom.fd < 0) {
        errorText = QStringLiteral("No ROM image is open.");
        return false;
    }
    if (!rom.writable) {
        errorText = QStringLiteral("The ROM image %1 is read-only.").arg(rom.fileName);
        return false;
    }
    if (position < 0) {
        errorText = QStringLiteral("Cannot write before the start of the file.");
        return false;
    }
    const auto* in = static_cast<const char*>(data);
    int64_t done = 0;
    while (done < count) {
        const ssize_t put = ::pwrite(rom.fd, in + done, size_t(count - done), off_t(position + done));
        if (put < 0 && errno == EINTR)
            continue;
        if (put <= 0) {
            errorText = put < 0 ? SystemErrorText(errno) : QStringLiteral("The disk accepted no more bytes.");
            return false;
        }
        done += put;
    }
    return true;
}
