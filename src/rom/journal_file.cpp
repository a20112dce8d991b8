#include "rom/journal_file.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {
const QString kSuffix = QStringLiteral(".zelvane-journal");
// Past this a file is no journal this program wrote; it is kept, never read whole.
constexpr int64_t kMaxJournalBytes = int64_t(1) << 30;

QString SystemError() { return QString::fromLocal8Bit(std::strerror(errno)); }
QByteArray Native(const QString& path) { return QFile::encodeName(path); }

QString StateFolderJournal(const QString& canonicalImage)
{
    QString state = qEnvironmentVariable("XDG_STATE_HOME");
    if (state.isEmpty())
        state = QDir::homePath() + QStringLiteral("/.local/state");
    const QByteArray key = QCryptographicHash::hash(canonicalImage.toUtf8(), QCryptographicHash::Sha1);
    return QStringLiteral("%1/zelvane-art/journals/%2%3").arg(state, QString::fromLatin1(key.toHex()), kSuffix);
}

bool NameExists(const QString& path)
{
    struct stat info {};
    return ::lstat(Native(path).constData(), &info) == 0;
}

// Syncing the folder keeps a new or renamed journal's name across a crash.
void SyncFolder(const QString& path)
{
    const int fd = ::open(Native(QFileInfo(path).absolutePath()).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd >= 0) {
        ::fsync(fd);
        ::close(fd);
    }
}

QString SymlinkRefusal(const QString& path)
{
    return QStringLiteral("the journal %1 is a symbolic link, which is never followed; move it away to write to the image")
        .arg(QDir::toNativeSeparators(path));
}

// Opens without following a link; the file must be a regular one.
int OpenNoFollow(const QString& path, int flags, QString& errorText)
{
    const int fd = ::open(Native(path).constData(), flags | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0) {
        errorText = errno == ELOOP ? SymlinkRefusal(path) : SystemError();
        return -1;
    }
    struct stat info {};
    if (::fstat(fd, &info) != 0 || !S_ISREG(info.st_mode) || info.st_size > kMaxJournalBytes) {
        errorText = QStringLiteral("the journal %1 is not a regular file of a journal's size").arg(QDir::toNativeSeparators(path));
        ::close(fd);
        return -1;
    }
    return fd;
}

// The file from position on.
QByteArray ReadFrom(int fd, int64_t position)
{
    struct stat info {};
    QByteArray bytes;
    if (::fstat(fd, &info) != 0 || info.st_size < position)
        return bytes;
    bytes.resize(qsizetype(info.st_size - position));
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t got = ::pread(fd, bytes.data() + done, size_t(bytes.size() - done), off_t(position + done));
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            break;
        done += got;
    }
    bytes.truncate(done);
    return bytes;
}

uint64_t InodeOf(int fd)
{
    struct stat info {};
    return ::fstat(fd, &info) == 0 ? uint64_t(info.st_ino) : 0;
}

bool CanReadOn(const JournalContents& known, int fd)
{
    struct stat info {};
    return known.format == JournalFormat::Current && !IsDamaged(known) && known.inode != 0 && ::fstat(fd, &info) == 0
           && uint64_t(info.st_ino) == known.inode && info.st_size >= known.soundEnd;
}

JournalContents ReadContents(int fd, const JournalContents& known)
{
    JournalContents contents = known;
    if (CanReadOn(known, fd))
        ContinueJournal(contents, ReadFrom(fd, known.soundEnd));
    else
        contents = ParseJournal(ReadFrom(fd, 0));
    contents.inode = InodeOf(fd);
    return contents;
}

// A new journal: made, never taken over, and flushed with its name.
bool CreateJournal(JournalFile& journal, int firstNumber, const QString& carriesOn, QString& errorText)
{
    QDir().mkpath(QFileInfo(journal.path).absolutePath());
    journal.fd = ::open(Native(journal.path).constData(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0644);
    if (journal.fd < 0) {
        errorText = errno == EEXIST && !QFileInfo(journal.path).isFile() ? SymlinkRefusal(journal.path) : SystemError();
        return false;
    }
    const QByteArray header = JournalHeader(firstNumber, carriesOn);
    journal.contents = ParseJournal(header);
    journal.contents.inode = InodeOf(journal.fd);
    if (!WriteFileAt(journal.fd, 0, header.constData(), header.size(), errorText) || !SyncFile(journal.fd, errorText)) {
        ::unlink(Native(journal.path).constData());
        CloseJournalFile(journal);
        return false;
    }
    journal.contents.soundEnd = header.size();
    SyncFolder(journal.path);
    return true;
}

// Renames the journal, unchanged, to the first free NAME.kept-N beside it.
bool KeepJournal(const QString& path, QString& keptName, QString& errorText)
{
    for (int n = 1; n < 1000; ++n) {
        const QString kept = QStringLiteral("%1.kept-%2").arg(path).arg(n);
        if (::link(Native(path).constData(), Native(kept).constData()) == 0) {
            ::unlink(Native(path).constData());
            SyncFolder(path);
            keptName = QFileInfo(kept).fileName();
            return true;
        }
        if (errno != EEXIST)
            break;
    }
    errorText = QStringLiteral("the journal %1 could not be kept aside (%2)").arg(QDir::toNativeSeparators(path), SystemError());
    return false;
}

bool NeedsKeeping(const JournalContents& contents)
{
    return contents.format == JournalFormat::Older || contents.format == JournalFormat::Foreign || IsDamaged(contents);
}

bool KeepAndStartAnew(JournalFile& journal, QString& errorText)
{
    const int carriedOn = journal.contents.firstNumber + int(DoneChanges(journal.contents).size());
    QString keptName;
    ::close(journal.fd);
    journal.fd = -1;
    journal.keepBeforeWriting = false;
    return KeepJournal(journal.path, keptName, errorText) && CreateJournal(journal, carriedOn, keptName, errorText);
}
}

QString CanonicalImagePath(const QString& path)
{
    const QFileInfo info(path);
    const QString canonical = info.canonicalFilePath();
    return canonical.isEmpty() ? QDir::cleanPath(info.absoluteFilePath()) : canonical;
}

QString JournalPathFor(const QString& canonicalImage)
{
    const QString beside = canonicalImage + kSuffix, state = StateFolderJournal(canonicalImage);
    if (NameExists(beside))
        return beside;
    if (NameExists(state))
        return state;
    const QByteArray folder = Native(QFileInfo(canonicalImage).absolutePath());
    return ::access(folder.constData(), W_OK) == 0 ? beside : state;
}

JournalContents ReadJournal(const QString& journalPath, QString& problem)
{
    problem.clear();
    if (!NameExists(journalPath))
        return {};
    const int fd = OpenNoFollow(journalPath, O_RDONLY, problem);
    if (fd < 0)
        return {};
    const JournalContents contents = ReadContents(fd, {});
    ::close(fd);
    return contents;
}

bool OpenJournalForChange(JournalFile& journal, const QString& canonicalImage, const JournalContents& known,
                          QString& errorText)
{
    CloseJournalFile(journal);
    journal.path = JournalPathFor(canonicalImage);
    if (!NameExists(journal.path))
        return CreateJournal(journal, 1, {}, errorText);
    journal.fd = OpenNoFollow(journal.path, O_RDWR, errorText);
    if (journal.fd < 0)
        return false;
    journal.contents = ReadContents(journal.fd, known);
    journal.keepBeforeWriting = NeedsKeeping(journal.contents);
    // What follows the sound records is a record torn by a crash; it goes.
    if (!journal.keepBeforeWriting && ::ftruncate(journal.fd, off_t(journal.contents.soundEnd)) != 0) {
        errorText = SystemError();
        CloseJournalFile(journal);
        return false;
    }
    return true;
}

bool AppendRecord(JournalFile& journal, const QByteArray& record, QString& errorText)
{
    if (journal.keepBeforeWriting && !KeepAndStartAnew(journal, errorText))
        return false;
    const int64_t end = journal.contents.soundEnd;
    if (!WriteFileAt(journal.fd, end, record.constData(), record.size(), errorText) || !SyncFile(journal.fd, errorText)) {
        (void)::ftruncate(journal.fd, off_t(end)); // a torn record would only be cut later
        return false;
    }
    journal.contents.soundEnd = end + record.size();
    return true;
}

void CloseJournalFile(JournalFile& journal)
{
    if (journal.fd >= 0)
        ::close(journal.fd);
    journal.fd = -1;
}

std::vector<JournalEntry> DoneChanges(const JournalContents& journal)
{
    std::vector<JournalEntry> done;
    for (const JournalEntry& entry : journal.entries)
        if (entry.state == ChangeState::Done) {
            done.push_back(entry);
            done.back().number = journal.firstNumber + int(done.size()) - 1;
        }
    return done;
}

const JournalEntry* PendingChange(const JournalContents& journal)
{
    const bool pending = !IsDamaged(journal) && !journal.entries.empty() && journal.entries.back().state == ChangeState::Open;
    return pending ? &journal.entries.back() : nullptr;
}

JournalEntry* PendingChange(JournalContents& journal)
{
    return const_cast<JournalEntry*>(PendingChange(std::as_const(journal)));
}
