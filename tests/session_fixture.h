#pragma once
// An editor session on a demo image in a temporary folder, with a prompter that answers
// from a script and keeps every question it was asked.
#include "app/editor_session.h"
#include "demo_image.h"
#include "library_fixture.h"

#include <deque>
#include <sys/fsuid.h>
#include <sys/stat.h>
#include <unistd.h>

// How every refusal and error message begins.
inline const QString kRefusal = QStringLiteral("(x) message ZOMG ERROR!!!1: ");

struct ScriptedPrompter {
    std::deque<PromptAnswer> answers; // an empty script cancels
    QStringList asked;                // each question as Asked() writes it

    Prompter Function()
    {
        return [this](const Prompt& prompt) {
            asked << Asked(prompt);
            PromptAnswer answer;
            if (!answers.empty())
                answer = answers.front(), answers.pop_front();
            return answer;
        };
    }
    ScriptedPrompter& Answer(Reply reply, const QString& text = {})
    {
        answers.push_back({reply, text});
        return *this;
    }

    // "<icon> title: text", with the filters for a file question.
    static QString Asked(const Prompt& p)
    {
        static const char* const kinds[] = {"message", "yes/no", "yes/no/cancel", "text", "open", "save"};
        static const char* const icons[] = {"", "(i) ", "(?) ", "(x) "};
        const QString what = p.kind >= PromptKind::OpenFile ? p.filters : p.text;
        return QStringLiteral("%1%2 %3: %4").arg(icons[int(p.icon)], kinds[int(p.kind)], p.title, what);
    }
};

struct SessionFixture {
    QTemporaryDir dir;
    QString romPath = dir.filePath(QStringLiteral("demo.bin"));
    ScriptedPrompter script;
    EditorSession session{script.Function()};
    const EditorState& state = session.State();

    SessionFixture() { WriteFileBytes(romPath, BuildDemoImage()); }
    QByteArray RomBytes() const { return FileBytes(romPath); }

    // Opens the image and shows a frame of an entry, as a user starting to edit would.
    void Show(int entry, int frame = -1)
    {
        session.OpenFile(romPath);
        session.SelectArtEntry(entry);
        if (frame >= 0)
            session.SelectFrame(frame);
    }
    // Opens the image as a user who may only read it: root may write any file.
    void OpenReadOnly()
    {
        ::chmod(QFile::encodeName(romPath).constData(), 0444);
        ::chmod(QFile::encodeName(dir.path()).constData(), 0755);
        ::setfsuid(65534);
        session.OpenFile(romPath);
        ::setfsuid(::geteuid());
    }
    // A double click on a palette box, answered with the typed colour (none cancels).
    void EditColor(int box, const QString& typed)
    {
        script.Answer(Reply::Ok, typed);
        session.PickColorSlot(box);
        session.EditColorSlot(box);
    }
    void Stroke(QPoint canvasPoint)
    {
        session.PressCanvas();
        session.PaintFramePixel(CanvasPixelAt(canvasPoint, state.zoom));
        session.ReleaseCanvas();
    }
};
