// Crash safety: a command killed right after any one of its writes leaves an image that
// opens as it was before the command or as it is after it; a torn journal is read up
// to the tear.
#include "session_fixture.h"

#include <QtTest>
#include <sys/wait.h>

namespace {
// The commands a child runs: a palette edit, and saves at the end and over the image's
// start (the answer 0x1000 reads as position 0).
void RunCommand(SessionFixture& f, const QString& command)
{
    f.Show(2, 1);
    f.Stroke({30, 30});
    if (command == "palette edit")
        return f.EditColor(4, "FF00FF");
    f.script.Answer(command == "append" ? Reply::Yes : Reply::No).Answer(Reply::Ok, "0x1000");
    f.session.SaveArt();
}

struct Outcome {
    QByteArray before, image; // as the command found it, and as it opens again
    QStringList notes;        // what the reopening said
};

// Runs command in a child killed right after its kth write (never, for k 0) and opens
// the image again. For "undone save", the save is done first and the undo is killed.
Outcome RunKilled(const QString& command, int k)
{
    SessionFixture f;
    if (command == "undone save")
        RunCommand(f, "append");
    Outcome outcome{f.RomBytes(), {}, {}};
    const pid_t child = ::fork();
    if (child == 0) {
        InjectWriteFault(k, WriteFault::KillsAfter);
        command == "undone save" ? f.session.Undo() : RunCommand(f, command);
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    SessionFixture reopened;
    reopened.session.OpenFile(f.romPath);
    outcome.image = FileBytes(f.romPath);
    outcome.notes = reopened.script.asked;
    return outcome;
}
}

class TestJournal : public QObject {
    Q_OBJECT
private slots:
    void killedAfterAnyWrite_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<int>("writes"); // of the journal and the image together
        QTest::newRow("palette edit") << "palette edit" << 4;
        QTest::newRow("save at the end") << "append" << 5;
        QTest::newRow("save over the start") << "typed" << 5;
        QTest::newRow("undo of a save") << "undone save" << 3;
    }

    void killedAfterAnyWrite()
    {
        QFETCH(QString, command);
        QFETCH(int, writes);
        const Outcome done = RunKilled(command, 0);
        QVERIFY(done.image != done.before && done.notes.isEmpty());
        for (int k = 1; k <= writes; ++k) {
            const Outcome killed = RunKilled(command, k);
            // Killed before its change was marked done, the change is put back, and that is said.
            QVERIFY2(killed.image == (k < writes ? killed.before : done.image), qPrintable(QStringLiteral("write %1").arg(k)));
            const bool journaled = k > 1 && k < writes; // its old bytes reached the journal first
            QVERIFY(killed.notes.size() <= 1 && (!journaled || killed.notes.value(0).contains("was interrupted. The image was put back")));
        }
    }

    void damageIsToldFromATornTail()
    {
        SessionFixture f;
        RunCommand(f, "append");
        RunCommand(f, "palette edit");
        const QByteArray journal = FileBytes(f.romPath + ".zelvane-journal");
        QCOMPARE(ParseJournal(journal).entries.size(), size_t(2));
        // The last done mark: a 12-byte head and its kind. A flipped bit in its payload or
        // the payload's check may be a tear; in its length, or the length's check, it cannot.
        const qsizetype magic = 16, lastPayloadCheck = journal.size() - 13 + 8;
        // Cut anywhere, the journal is sound up to the cut; one flipped bit before that is
        // damage, never a torn tail, and nothing is read past it.
        for (qsizetype at = magic; at < journal.size(); ++at) {
            const JournalContents cut = ParseJournal(journal.left(at));
            QVERIFY(!IsDamaged(cut) && cut.entries.size() <= 2 && cut.soundEnd <= at);
            QByteArray damaged = journal;
            damaged[at] = char(damaged[at] ^ 0x40);
            const JournalContents flipped = ParseJournal(damaged);
            QVERIFY2(flipped.soundEnd <= at && IsDamaged(flipped) == (at < lastPayloadCheck), qPrintable(QString::number(at)));
        }
    }
};

QTEST_GUILESS_MAIN(TestJournal)
#include "test_journal.moc"
