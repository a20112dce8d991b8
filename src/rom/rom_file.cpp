#include "rom/rom_file.h"

#include <QElapsedTimer>
#include <QFile>

#include <cerrno>
#include <csignal>
#include <optional>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
QString SystemErrorText(int error) { return QString::fromLocal8Bit(std::strerror(error)); }

struct PendingFault {
    int writesLeft = 0; // 0: none pending
    WriteFault fault = WriteFault::Fails;
} pendingFault;

// The fault this write meets, if it is the one.
std::optional<WriteFault> TakeFault()
{
    if (pendingFault.writesLeft == 0 || --pendingFault.writesLeft > 0)
        return std::nullopt;
    return pendingFault.fault;
}

bool WriteAll(int fd, int64_t position, const char* in, int64_t count, QString& errorText)
{
    int64_t done = 0;
    while (done < count) {
        const ssize_t put = ::pwrite(fd, in + done, size_t(count - done), off_t(position + done));
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
}

void InjectWriteFault(int nth, WriteFault fault) { pendingFault = {nth, fault}; }
void ClearWriteFault() { pendingFault = {}; }

bool WriteFileAt(int fd, int64_t position, const void* data, int64_t count, QString& errorText)
{
    const auto* in = static_cast<const char*>(data);
    const std::optional<WriteFault> fault = TakeFault();
    if (!fault)
        return WriteAll(fd, position, in, count, errorText);
    if (*fault == WriteFault::KillsAfter) {
        WriteAll(fd, position, in, count, errorText);
        ::kill(::getpid(), SIGKILL);
    }
    WriteAll(fd, position, in, *fault == WriteFault::WritesShort ? count / 2 : 0, errorText);
    errorText = SystemErrorText(*fault == WriteFault::Fails ? EIO : ENOSPC);
    return false;
}

bool SyncFile(int fd, QString& errorText)
{
    while (::fdatasync(fd) != 0) {
        if (errno != EINTR) {
            errorText = SystemErrorText(errno);
            return false;
        }
    }
    return true;
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
    return WriteFileAt(rom.fd, position, data, count, errorText);
}

bool SyncRom(const RomFile& rom, QString& errorText) { return SyncFile(rom.fd, errorText); }

bool TruncateRom(RomFile& rom, int64_t length, QString& errorText)
{
    if (rom.fd < 0 || !rom.writable || length < 0) {
        errorText = QStringLiteral("The ROM image cannot be cut back to its old length.");
        return false;
    }
    while (::ftruncate(rom.fd, off_t(length)) != 0) {
        if (errno != EINTR) {
            errorText = SystemErrorText(errno);
            return false;
        }
    }
    return true;
}

int LockImage(const RomFile& rom, int waitMs, QString& errorText)
{
    const int lock = ::open(QByteArray("/proc/self/fd/" + QByteArray::number(rom.fd)).constData(), O_RDONLY | O_CLOEXEC);
    if (lock < 0) {
        errorText = SystemErrorText(errno);
        return -1;
    }
    QElapsedTimer waited;
    waited.start();
    while (::flock(lock, LOCK_EX | LOCK_NB) != 0) {
        const bool busy = errno == EWOULDBLOCK || errno == EINTR;
        if (!busy || waited.elapsed() >= waitMs) {
            errorText = busy ? QStringLiteral("another program has been writing to %1 for %2 s; nothing was written, try again")
                                   .arg(rom.fileName).arg(waitMs / 1000.0)
                             : SystemErrorText(errno);
            ::close(lock);
            return -1;
        }
        ::usleep(2000);
    }
    return lock;
}

void UnlockImage(int lock)
{
    if (lock >= 0)
        ::close(lock);
}

bool IsSameFileAs(const RomFile& rom, const QString& fileName)
{
    struct stat open {}, named {};
    return ::fstat(rom.fd, &open) == 0 && ::stat(QFile::encodeName(fileName).constData(), &named) == 0
           && open.st_dev == named.st_dev && open.st_ino == named.st_ino;
}
