#pragma once
// What the fuzz targets share: the fuzzer's bytes as a file that the code under test
// opens by name, as it opens the user's files.
#include <QByteArray>
#include <QString>
#include <sys/mman.h>
#include <unistd.h>

struct MemoryFile {
    int fd = ::memfd_create("fuzz", MFD_CLOEXEC);
    ~MemoryFile() { ::close(fd); }
    QString Path() const { return QStringLiteral("/proc/self/fd/%1").arg(fd); }
    void Fill(const uint8_t* data, size_t size)
    {
        (void)::ftruncate(fd, 0);
        (void)::pwrite(fd, data, size, 0);
    }
};
