// Undo and redo, and what random sequences of commands do to the image: only the ranges
// the journal records change, the journal holds what was there, and undoing every step
// (or reverting to before the first change) gives the original image back.
#include "art/save_art.h"
#include "exchange/bitmap_fixtures.h"
#include "session_fixture.h"

#include <QtTest>
#include <random>

namespace {
constexpr int kPalette1 = 0x22923E;

std::vector<JournalEntry> JournalOf(const SessionFixture& f) { return ParseJournal(FileBytes(f.romPath + ".zelvane-journal")).entries; }

// One command picked at random, with random answers to its questions.
void RandomCommand(SessionFixture& f, std::mt19937& random, const QString& bitmap)
{
    auto pick = [&random](int n) { return int(random() % uint32_t(n)); };
    const int64_t length = FileBytes(f.romPath).size();
    const std::function<void()> commands[] = {
        [&] { f.session.SelectArtEntry(pick(14)); },
        [&] { f.session.SelectFrame(pick(int(f.state.frameLines.size()))); },
        [&] { f.session.PickColorSlot(PaletteBoxUnder(PalboxRect(pick(16)).center())); f.Stroke({pick(245), pick(205)}); },
        [&] { f.EditColor(pick(16), pick(4) ? QString::number(random() & 0xFFFFFF, 16) : QString()); }, // or cancelled
        [&] { f.script.Answer(Reply::Ok, bitmap).Answer(pick(2) ? Reply::Yes : Reply::No); f.session.ImportBitmap(); f.session.CopySection(); },
        [&] { // at the end, at a position that may lie beyond it, or cancelled
            f.script.Answer(Reply(pick(3) + 1)).Answer(Reply::Ok, QString::number(pick(int(length) + 64), 16));
            f.session.SaveArt();
        },
        [&] { f.session.ClearPictures(); }, [&] { f.session.Undo(); }, [&] { f.session.Redo(); }};
    commands[pick(9)]();
}

// The bytes that differ, and a change of length, lie in the journal's last new change,
// whose old bytes are what the image held there. Bytes past either end count as zero.
void CheckOnlyJournaledBytesChanged(QByteArray before, QByteArray after, const std::vector<JournalEntry>& added)
{
    QVERIFY(added.size() <= 1);
    const qsizetype oldLength = before.size(), length = std::max(before.size(), after.size());
    before.resize(length, '\0'), after.resize(length, '\0');
    for (const JournalEntry& entry : added) {
        QVERIFY(entry.state == ChangeState::Done && entry.oldLength == oldLength);
        for (const JournalRange& range : entry.ranges) {
            const qsizetype at = qsizetype(range.position), count = std::min(qsizetype(range.length), length - at);
            QCOMPARE(range.oldBytes, before.mid(at, range.oldBytes.size()));
            before.replace(at, count, after.mid(at, count)); // what the change may write
        }
    }
    QVERIFY2(before == after, "bytes changed outside the journaled ranges");
}
}

class TestSessionHistory : public QObject {
    Q_OBJECT
private slots:
    void undoAndRedo()
    {
        SessionFixture f;
        f.Show(8, 1); // a table the save does not read again: undo restores its entry itself
        const QByteArray original = f.RomBytes();
        const QImage shown = f.state.preview.image;
        f.Stroke({10, 10});
        const QImage painted = f.state.preview.image;
        f.EditColor(3, "FF"); // reads the frame anew: the stroke is gone, and no longer undoable
        const QByteArray edited = f.RomBytes();
        const QImage redrawn = f.state.preview.image;
        f.Stroke({20, 20});
        f.script.Answer(Reply::No).Answer(Reply::Ok, "2FFFFF"); // over the last byte, 00, with FF, and on
        f.session.SaveArt();
        f.session.ClearPictures();
        const QByteArray saved = f.RomBytes();
        f.script.asked.clear();

        f.session.Undo(); // Clr
        f.session.Undo(); // the save: length, last byte and entry back
        QCOMPARE(f.RomBytes(), edited);
        QCOMPARE(f.state.document.tables[8].pointers[1], int32_t(BigEndian32(reinterpret_cast<const uint8_t*>(original.constData()) + 0x11F7AC) - kCartridgeBase));
        f.session.Undo(); // the second stroke
        QCOMPARE(f.state.preview.image, redrawn);
        f.session.Undo(); // the palette edit, drawn in the old colour again
        QCOMPARE(f.RomBytes(), original);
        QCOMPARE(f.state.document.palettes[8].colors[3], ConsoleColor(uint8_t(original[kPalette1 + 4]) << 8 | uint8_t(original[kPalette1 + 5])));
        f.session.Undo(); // nothing left: the first stroke went with the redraw
        QCOMPARE(f.state.preview.image, shown);
        QVERIFY(painted != shown);

        f.session.Redo();
        QCOMPARE(f.state.document.palettes[8].colors[3], ConsoleColor(0x001F));
        for (int i = 0; i < 4; ++i)
            f.session.Redo();
        QCOMPARE(f.RomBytes(), saved);
        QVERIFY(f.script.asked.isEmpty()); // undo and redo ask nothing
        // A new step after an undo leaves nothing to redo.
        f.session.Undo();
        f.Stroke({5, 5});
        f.session.Redo();
        QCOMPARE(f.RomBytes(), edited);
        // Another program wrote over the palette edit, and near it: its undo is refused.
        QByteArray changed = edited;
        changed[kPalette1 + 4] = 'x';
        changed[kPalette1 - 1] = 'x';
        WriteFileBytes(f.romPath, changed);
        f.session.Undo(); // the stroke
        f.session.Undo();
        QCOMPARE(f.script.asked, QStringList{kRefusal + "The palette edit was not undone: the image was changed since, outside this editor."});
        QCOMPARE(f.RomBytes(), changed);
        // Undo and redo wait for the stroke under way to end.
        f.Stroke({40, 40});
        f.session.PressCanvas();
        f.session.PaintFramePixel({30, 30});
        const QImage midStroke = f.state.preview.image;
        f.session.Undo();
        f.session.Redo();
        QCOMPARE(f.state.preview.image, midStroke);
        f.session.ReleaseCanvas();
    }

    // Another program repoints table 1's entries while the editor shows slot 2: the lists
    // follow without a command, the selection stays, and the frame is drawn again only
    // once its own pixels change. The editor's earlier change can no longer be undone.
    void followsOtherPrograms()
    {
        SessionFixture f;
        f.Show(1, 2);
        f.EditColor(3, "FF");
        f.Stroke({12, 12});
        const QImage painted = f.state.preview.image;
        const ArtTable table = f.state.document.tables[1];
        RomDocument other;
        QStringList notes;
        QString errorText;
        QVERIFY(OpenDocument(other, f.romPath, notes, errorText));
        auto point = [&](int slot, int at) {
            JournalEntry made;
            ArtTable pointed = table;
            SetFramePointer(pointed, slot, table.pointers[size_t(at)]);
            const PlannedChange change{{FramePointerPatch(pointed, slot)}, -1};
            QVERIFY(ChangeDocument(other, "point", [&](const RomDocument&, QString&) { return std::optional(change); }, made, errorText));
        };
        point(0, 2);
        QTRY_COMPARE(f.state.frameLines.value(0), f.state.frameLines.value(2));
        QVERIFY(f.state.artRow == 1 && f.state.frameRow == 2 && f.state.preview.image == painted);
        point(2, 1);
        QTRY_VERIFY(f.state.preview.image != painted);
        f.session.Undo();
        QCOMPARE(f.script.asked.last(), kRefusal + "The palette edit was not undone: the image was changed since, outside this editor.");
        CloseDocument(other);
    }

    void randomCommands_data()
    {
        QTest::addColumn<uint>("seed");
        for (uint seed : {1u, 2u, 3u, 4u})
            QTest::addRow("seed %u", seed) << seed;
    }

    void randomCommands()
    {
        QFETCH(uint, seed);
        SessionFixture f;
        const QString bitmap = f.dir.filePath("in.bmp");
        WriteFileBytes(bitmap, DiagonalBitmap());
        f.Show(1);
        const QByteArray original = f.RomBytes();
        std::mt19937 random(seed);
        for (int step = 0; step < 60; ++step) {
            const QByteArray before = f.RomBytes();
            const size_t journaled = JournalOf(f).size();
            RandomCommand(f, random, bitmap);
            const std::vector<JournalEntry> entries = JournalOf(f);
            CheckOnlyJournaledBytesChanged(before, f.RomBytes(), {entries.begin() + qsizetype(journaled), entries.end()});
        }
        for (int undo = 0; undo < 200 && !f.state.history.done.empty(); ++undo)
            f.session.Undo();
        QCOMPARE(f.RomBytes(), original);
        for (int redo = 0; redo < 200 && !f.state.history.undone.empty(); ++redo)
            f.session.Redo();
        QVERIFY(f.session.RevertToBefore(1));
        QCOMPARE(f.RomBytes(), original);
    }
};

QTEST_GUILESS_MAIN(TestSessionHistory)
#include "test_session_history.moc"
