#pragma once
// Every question a command asks, as a plain record, and the one function that answers
// it. The editor answers with real dialogs; tests answer from a script.
#include <QString>
#include <functional>

enum class PromptKind { Message, YesNo, YesNoCancel, Text, OpenFile, SaveFile };
enum class PromptIcon { None, Information, Question, Critical };
enum class Reply { Ok, Yes, No, Cancel };

struct Prompt {
    PromptKind kind = PromptKind::Message;
    PromptIcon icon = PromptIcon::None;
    QString title;
    QString text;    // the message, the question or the input box's prompt
    QString filters; // file questions: "Name|*.ext|Other|*.*", the first preselected
};

// Questions default to Yes and messages have only OK. text is what was typed, or
// the file chosen; empty when the user cancelled.
struct PromptAnswer {
    Reply reply = Reply::Cancel;
    QString text;
};

using Prompter = std::function<PromptAnswer(const Prompt&)>;

extern const QString kRefusalTitle;
extern const QString kEditorTitle;

// A refusal: "ZOMG ERROR!!!1", the critical icon and OK.
void Refuse(const Prompter& prompter, const QString& text);
// A note of the editor's own (the information icon, the editor's title and OK).
void Inform(const Prompter& prompter, const QString& text);
// A help text: "What is this?", the information icon and OK.
void ShowHelp(const Prompter& prompter, const QString& text);
// "Question" with Yes and No.
bool AskYesNo(const Prompter& prompter, const QString& text);
// "Question" with Yes, No and Cancel.
Reply AskYesNoCancel(const Prompter& prompter, const QString& text);
QString AskText(const Prompter& prompter, const QString& prompt, const QString& title);
QString AskFile(const Prompter& prompter, PromptKind kind, const QString& title, const QString& filters);
