#include "app/prompter.h"

const QString kRefusalTitle = QStringLiteral("ZOMG ERROR!!!1");
const QString kEditorTitle = QStringLiteral("Brennals' Zelvane Art Editor");

void Refuse(const Prompter& prompter, const QString& text)
{
    prompter({PromptKind::Message, PromptIcon::Critical, kRefusalTitle, text, {}});
}

void Inform(const Prompter& prompter, const QString& text)
{
    prompter({PromptKind::Message, PromptIcon::Information, kEditorTitle, text, {}});
}

void ShowHelp(const Prompter& prompter, const QString& text)
{
    prompter({PromptKind::Message, PromptIcon::Information, QStringLiteral("What is this?"), text, {}});
}

bool AskYesNo(const Prompter& prompter, const QString& text)
{
    return prompter({PromptKind::YesNo, PromptIcon::Question, QStringLiteral("Question"), text, {}}).reply == Reply::Yes;
}

Reply AskYesNoCancel(const Prompter& prompter, const QString& text)
{
    return prompter({PromptKind::YesNoCancel, PromptIcon::Question, QStringLiteral("Question"), text, {}}).reply;
}

QString AskText(const Prompter& prompter, const QString& prompt, const QString& title)
{
    return prompter({PromptKind::Text, PromptIcon::None, title, prompt, {}}).text;
}

QString AskFile(const Prompter& prompter, PromptKind kind, const QString& title, const QString& filters)
{
    return prompter({kind, PromptIcon::None, title, {}, filters}).text;
}
