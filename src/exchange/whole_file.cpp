#include "exchange/whole_file.h"

#include "rom/rom_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
QString SystemError() { return QString::fromLocal8Bit(std::strerror(errno)); }

mode_t CurrentUmask()
{
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return mask;
}

// An unnamed file in folder, if the file system has them; otherwise a hidden named one.
int OpenNewFile(const QByteArray& folder, QByteArray& namedPath)
{
    const int fd = ::open(folder.constData(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666);
    if (fd >= 0 || (errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL))
        return fd;
    namedPath = folder + "/.zelvane-export-XXXXXX";
    return ::mkostemp(namedPath.data(), O_CLOEXEC);
}

// The unnamed file's contents get the file's name in one step.
bool TakeName(int fd, const QByteArray& namedPath, const QByteArray& folder, const QByteArray& target)
{
    QByteArray linked = namedPath;
    if (linked.isEmpty()) {
        linked = folder + "/.zelvane-export-" + QByteArray::number(QRandomGenerator::global()->generate64(), 16);
        const QByteArray self = "/proc/self/fd/" + QByteArray::number(fd);
        if (::linkat(AT_FDCWD, self.constData(), AT_FDCWD, linked.constData(), AT_SYMLINK_FOLLOW) != 0)
            return false;
    }
    if (::rename(linked.constData(), target.constData()) == 0)
        return true;
    const int error = errno;
    ::unlink(linked.constData());
    errno = error;
    return false;
}
}

bool WriteWholeFile(const QString& fileName, const QByteArray& bytes, QString& errorText)
{
    const QByteArray target = QFile::encodeName(fileName);
    const QByteArray folder = QFile::encodeName(QFileInfo(fileName).absolutePath());
    struct stat old {};
    const bool existed = ::stat(target.constData(), &old) == 0;
    QByteArray namedPath;
    const int fd = OpenNewFile(folder, namedPath);
    QString reason = fd < 0 ? SystemError() : QString();
    if (fd >= 0) // the old file's permissions, or those a new file gets
        (void)::fchmod(fd, existed ? old.st_mode & 07777 : 0666 & ~CurrentUmask());
    bool written = fd >= 0 && WriteFileAt(fd, 0, bytes.constData(), bytes.size(), reason) && SyncFile(fd, reason);
    if (written && !TakeName(fd, namedPath, folder, target)) {
        reason = SystemError();
        written = false;
    }
    if (fd >= 0)
        ::close(fd);
    if (!written && !namedPath.isEmpty())
        ::unlink(namedPath.constData());
    if (written)
        return true;
    errorText = QStringLiteral("Could not write \"%1\": %2. %3")
                    .arg(QDir::toNativeSeparators(fileName), reason,
                         existed ? QStringLiteral("The file was kept as it was.") : QStringLiteral("No file was written."));
    return false;
}
