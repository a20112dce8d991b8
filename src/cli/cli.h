#pragma once
// The command line's commands and what they share: how they report, how they read
// their arguments, and the image they work on through its document.
#include "rom/rom_document.h"

#include <QCommandLineParser>
#include <QStringList>
#include <memory>
#include <optional>

constexpr int kDone = 0;    // the command did what was asked
constexpr int kRefused = 1; // the input was refused or a file failed; one line says why
constexpr int kUsage = 2;   // the command line itself is wrong

int RunTables(const QStringList& args);
int RunRip(const QStringList& args);
int RunInsert(const QStringList& args);
int RunImport(const QStringList& args);
int RunPalette(const QStringList& args);
int RunHistory(const QStringList& args);
int RunRevert(const QStringList& args);
int RunPatch(const QStringList& args);

// "zelvane-art: text" on stderr, on one line; gives kRefused.
int Fail(const QString& text);

// What a command takes, for its parser and its --help.
struct CommandHelp {
    QString name;     // as typed after zelvane-art
    QString synopsis; // the arguments and options
    QString summary;  // one line
    QString details;  // the options and what the command does, as printed by --help
    int positionals;  // how many arguments it needs
};

// Parses a command's arguments. Gives -1 to go on, or the exit code: kDone after
// printing --help, kUsage after saying what is wrong.
int ParseCommand(QCommandLineParser& parser, const QStringList& args, const CommandHelp& help);
QString HelpText(const CommandHelp& help);

// A decimal number from the command line, or nothing.
std::optional<int> DecimalArgument(const QString& text);

// The image a command works on.
struct CliImage {
    QString path;
    RomDocument document;
    QStringList notes; // what became of an interrupted change: a writer says it once its change is made
    ~CliImage() { CloseDocument(document); }
};

// Opens path as a document; nothing (after one line on stderr) when it cannot be
// opened, or, with forWriting, cannot be written. A reader says each note of the
// opening in a line of its own; a writer says them after its change, as a refused
// change says in its one line what stood in its way.
std::unique_ptr<CliImage> OpenImage(const QString& path, bool forWriting);

// Makes one journaled change; a refusal is one line, failureText with the reason.
int ChangeImage(CliImage& image, const QString& command, const ChangePlanner& plan, const QString& failureText);
// The end of a writing command: done, with the opening's notes, or refused in one line.
int Finish(const CliImage& image, bool done, const QString& refusal);

// A list that ends where its frame 0's data begins runs on once frame 0 moves
// elsewhere: a note says so when slot 0 of table is about to move to position.
void NoteListRunsOn(const RomDocument& document, int table, int slot, int32_t position);

// One line on stderr about the image: the text as it is when it names the image,
// else behind the image's path.
int FailAbout(const QString& path, const QString& text);

// While it lives, what libraries print to stderr (a picture decoder's complaints) goes
// nowhere: each command says what went wrong in its own one line.
struct QuietStderr {
    QuietStderr();
    ~QuietStderr();
    int saved;
};
