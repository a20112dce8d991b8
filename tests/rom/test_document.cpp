// Several programs on one image: documents taking turns keep every change, a journal
// that does not describe the image changes no byte of it, a journal's name is never
// followed, every name of an image finds its one journal, and damage is said and kept.
#include "demo_image.h"
#include "library_fixture.h"
#include "palette/palette_change.h"

#include <QtTest>
#include <sys/wait.h>
#include <unistd.h>

namespace {
constexpr int64_t kDemoLength = 3 * 1024 * 1024;

struct Shared {
    QTemporaryDir dir;
    QString path = dir.filePath(QStringLiteral("demo.bin"));
    QString journal = path + QStringLiteral(".zelvane-journal");
    QByteArray original = BuildDemoImage();
    Shared() { WriteFileBytes(path, original); }
};

// A document of its own on the image, as another program would have.
struct Writer {
    RomDocument document;
    QString notes, errorText;
    explicit Writer(const QString& path)
    {
        QStringList said;
        OpenDocument(document, path, said, errorText);
        notes = said.join(u'\n');
    }
    ~Writer() { CloseDocument(document); }
    bool Palette(int n, ConsoleColor color)
    {
        ::Palette edited = document.palettes[size_t(n)];
        edited.colors[2] = color;
        JournalEntry made;
        return ChangeDocument(document, QStringLiteral("palette"), PalettePlanner(edited), made, errorText);
    }
    bool Append(const QByteArray& bytes)
    {
        JournalEntry made;
        auto plan = [&](const RomDocument& d, QString&) {
            return std::optional<PlannedChange>({{{RomLength(d.file), bytes}}, -1});
        };
        return ChangeDocument(document, QStringLiteral("append"), plan, made, errorText);
    }
};

JournalRange Range(int64_t position, const QByteArray& oldBytes, const QByteArray& newBytes)
{
    return {position, std::max(oldBytes.size(), newBytes.size()), oldBytes, Crc32(newBytes)};
}

// A journal whose last change was interrupted.
QByteArray InterruptedJournal(int64_t oldLength, int64_t newLength, const std::vector<JournalRange>& ranges)
{
    return JournalHeader(1, {}) + BeginRecord({0, 0, QStringLiteral("crafted"), oldLength, newLength, ranges, ChangeState::Open});
}
}

class TestDocument : public QObject {
    Q_OBJECT
private slots:
    void takingTurnsKeepsEveryChange()
    {
        Shared image;
        Writer a(image.path), b(image.path);
        QVERIFY(a.Palette(1, 0x1234));
        QVERIFY(b.Append("appended by another program"));
        QVERIFY(b.Palette(2, 0x0421));
        QVERIFY(a.Palette(1, 0x7FFF)); // a's catalogue follows b's changes under the lock
        const std::vector<JournalEntry> history = DocumentHistory(a.document);
        QCOMPARE(history.size(), size_t(4));
        QCOMPARE(history.back().number, 4);
        QCOMPARE(a.document.palettes[2].colors[2], ConsoleColor(0x0421));
        JournalEntry made;
        QVERIFY(RevertDocument(b.document, 1, made, b.errorText));
        QCOMPARE(FileBytes(image.path), image.original);
    }

    void foreignJournalsChangeNothing_data()
    {
        QTest::addColumn<QByteArray>("journal");
        const QByteArray palette = BuildDemoImage().mid(0x22923E, 4);
        // Its one range holds what the image holds: without the rule that the ranges cover
        // all the file gained, the image would pass for the change's new state and be cut to 0.
        QTest::newRow("old length 0") << InterruptedJournal(0, kDemoLength, {Range(0, {}, BuildDemoImage().left(4))});
        QTest::newRow("old length 2^40") << InterruptedJournal(int64_t(1) << 40, kDemoLength, {});
        QTest::newRow("range at 2^47") << InterruptedJournal(kDemoLength, kDemoLength, {Range(int64_t(1) << 47, QByteArray(4, 'x'), {})});
        QTest::newRow("another image's change") << InterruptedJournal(kDemoLength, kDemoLength, {Range(0x22923E, "abcd", "efgh")});
        QTest::newRow("overlapping ranges") << InterruptedJournal(kDemoLength, kDemoLength, {Range(0x22923E, "abcd", palette), Range(0x229240, "ef", palette.mid(2))});
    }

    void foreignJournalsChangeNothing()
    {
        QFETCH(QByteArray, journal);
        Shared image;
        WriteFileBytes(image.journal, journal);
        Writer opened(image.path);
        QCOMPARE(FileBytes(image.path), image.original);
        QCOMPARE(FileBytes(image.journal), journal);
        // A writer is refused, or keeps a journal that cannot be read aside as it is.
        if (opened.Palette(1, 0x1234))
            QCOMPARE(FileBytes(image.journal + ".kept-1"), journal);
        else
            QCOMPARE(FileBytes(image.path), image.original);
    }

    void journalNameIsNeverFollowed_data()
    {
        QTest::addColumn<bool>("dangling");
        QTest::newRow("to a file") << false;
        QTest::newRow("to nothing") << true;
    }

    void journalNameIsNeverFollowed()
    {
        QFETCH(bool, dangling);
        Shared image;
        const QString target = image.dir.filePath(QStringLiteral("target"));
        if (!dangling)
            WriteFileBytes(target, "someone else's file");
        QVERIFY(QFile::link(target, image.journal));
        Writer opened(image.path);
        QVERIFY(!opened.Palette(1, 0x1234) && opened.errorText.contains("symbolic link"));
        QCOMPARE(FileBytes(target), dangling ? QByteArray() : QByteArray("someone else's file"));
        QCOMPARE(QFile::exists(target), !dangling);
        QCOMPARE(FileBytes(image.path), image.original);
    }

    // A change through a link, killed after its write to the image (the journal's header
    // and the change's old bytes come first), is put back
    // when the image is opened by its own name.
    void everyNameFindsOneJournal()
    {
        Shared image;
        QVERIFY(QDir(image.dir.path()).mkdir("links") && QFile::link("../demo.bin", image.dir.filePath("links/other.bin")));
        if (::fork() == 0) {
            Writer linked(image.dir.filePath("links/other.bin"));
            InjectWriteFault(3, WriteFault::KillsAfter);
            linked.Palette(1, 0x1234);
            ::_exit(0);
        }
        ::wait(nullptr);
        QVERIFY(FileBytes(image.path) != image.original);
        Writer byName(image.path);
        QVERIFY(byName.notes.contains("was interrupted. The image was put back"));
        QCOMPARE(FileBytes(image.path), image.original);
    }

    void damageIsSaidAndKept()
    {
        Shared image;
        Writer writer(image.path);
        for (int n = 1; n <= 3; ++n)
            QVERIFY(writer.Palette(n, ConsoleColor(n)));
        QByteArray journal = FileBytes(image.journal);
        journal[journal.size() / 2] = char(journal[journal.size() / 2] ^ 1);
        WriteFileBytes(image.journal, journal);
        Writer damaged(image.path);
        const std::vector<JournalEntry> sound = DocumentHistory(damaged.document);
        QVERIFY(sound.size() < 3 && JournalNotes(damaged.document).join("").contains("is damaged from byte"));
        JournalEntry made;
        QVERIFY(!RevertDocument(damaged.document, 1, made, damaged.errorText));
        QCOMPARE(FileBytes(image.journal), journal); // a refusal writes nothing
        QVERIFY(damaged.Palette(4, 0x0001));
        QCOMPARE(FileBytes(image.journal + ".kept-1"), journal);
        QCOMPARE(DocumentHistory(damaged.document).front().number, int(sound.size()) + 1);
        QVERIFY(!RevertDocument(damaged.document, 1, made, damaged.errorText) && damaged.errorText.contains("kept"));
    }

    void writersWaitForTheLock()
    {
        Shared image;
        Writer holder(image.path), other(image.path);
        QString busy;
        const int lock = LockImage(holder.document.file, 0, busy);
        QVERIFY(lock >= 0);
        other.document.writerWaitMs = 50;
        QVERIFY(!other.Palette(1, 0x1234) && other.errorText.contains("another program"));
        QVERIFY(Writer(image.path).errorText.isEmpty()); // a reader never waits
        UnlockImage(lock);
        QVERIFY(other.Palette(1, 0x1234));
    }
};

QTEST_GUILESS_MAIN(TestDocument)
#include "test_document.moc"
