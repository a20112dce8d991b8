#include "cli/cli.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

int Fail(const QString& text)
{
    QString line = text;
    line.replace(u'\n', u' ');
    std::fprintf(stderr, "zelvane-art: %s\n", qPrintable(line));
    return kRefused;
}

QString HelpText(const CommandHelp& help)
{
    return QStringLiteral("Usage: zelvane-art %1 %2\n%3\n\n%4\n").arg(help.name, help.synopsis, help.summary, help.details);
}

int ParseCommand(QCommandLineParser& parser, const QStringList& args, const CommandHelp& help)
{
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.addOption(QCommandLineOption(QStringLiteral("help")));
    if (parser.parse(QStringList{QStringLiteral("zelvane-art")} + args) && parser.isSet(QStringLiteral("help"))) {
        std::fputs(qPrintable(HelpText(help)), stdout);
        return kDone;
    }
    QString error = parser.errorText();
    if (error.isEmpty() && parser.positionalArguments().size() != help.positionals)
        error = QStringLiteral("%1 takes %2 arguments").arg(help.name).arg(help.positionals);
    if (error.isEmpty())
        return -1;
    std::fprintf(stderr, "zelvane-art %s: %s\nUsage: zelvane-art %s %s\n", qPrintable(help.name), qPrintable(error),
                 qPrintable(help.name), qPrintable(help.synopsis));
    return kUsage;
}

std::optional<int> DecimalArgument(const QString& text)
{
    bool ok = false;
    const int value = text.toInt(&ok, 10);
    return ok && !text.startsWith(u'+') ? std::optional<int>(value) : std::nullopt;
}

std::unique_ptr<CliImage> OpenImage(const QString& path, bool forWriting)
{
    // Checked first, so that a refusal is one line and the image is never touched.
    if (forWriting && QFile::exists(path) && ::access(QFile::encodeName(path).constData(), W_OK) != 0) {
        Fail(QStringLiteral("%1: the image is read-only; nothing was written").arg(QDir::toNativeSeparators(path)));
        return nullptr;
    }
    auto image = std::make_unique<CliImage>();
    image->path = path;
    QStringList& notes = image->notes;
    QString errorText;
    if (!OpenDocument(image->document, path, notes, errorText)) {
        Fail(QStringLiteral("Cannot open %1: %2").arg(QFileInfo(path).fileName(), errorText));
        return nullptr;
    }
    if (!image->document.catalogueWhole)
        notes << QStringLiteral("%1 is too short for a Zelvane ROM or its art tables are damaged. What could be read is "
                                "shown; the rest reads as empty.").arg(QFileInfo(path).fileName());
    for (const QString& note : forWriting ? QStringList() : notes + JournalNotes(image->document))
        FailAbout(path, note);
    return image;
}

int FailAbout(const QString& path, const QString& text)
{
    return Fail(text.contains(QFileInfo(path).fileName()) ? text : QDir::toNativeSeparators(path) + ": " + text);
}

int ChangeImage(CliImage& image, const QString& command, const ChangePlanner& plan, const QString& failureText)
{
    JournalEntry made;
    QString errorText;
    const bool done = ChangeDocument(image.document, command, plan, made, errorText);
    return Finish(image, done, failureText.arg(errorText));
}

int Finish(const CliImage& image, bool done, const QString& refusal)
{
    if (!done)
        return FailAbout(image.path, refusal);
    for (const QString& note : image.notes)
        FailAbout(image.path, note);
    return kDone;
}

QuietStderr::QuietStderr() : saved(::dup(2))
{
    std::fflush(stderr);
    const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (nowhere >= 0) {
        ::dup2(nowhere, 2);
        ::close(nowhere);
    }
}

QuietStderr::~QuietStderr()
{
    if (saved >= 0) {
        ::dup2(saved, 2);
        ::close(saved);
    }
}

void NoteListRunsOn(const RomDocument& document, int table, int slot, int32_t position)
{
    ArtTable reread;
    int32_t readPosition = 0;
    if (slot != 0 || position == document.tables[size_t(table)].pointers[0]
        || ReadArtTable(document.file, readPosition, reread, kArtTablePositions[size_t(table)]) != TableEnd::FirstFrameReached)
        return;
    std::fprintf(stderr, "zelvane-art: note: table %d's list ends where its frame 0 begins; with frame 0 elsewhere, "
                         "the list runs on into the data behind it, as after the editor's save\n", table);
}
