// zelvane-art run as a process on generated images: rip and insert round trips, the
// same bytes as the editor, and refusals that write nothing and say so in one line.
#include "exchange/bitmap_fixtures.h"
#include "session_fixture.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QtTest>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>

namespace {
constexpr int kFreeArea = 0x140000;

struct Run { int code; QByteArray out, err; };
constexpr int kCannotMount = 77;

// A full disk at folder, for the command alone: a small tmpfs mounted in a mount
// namespace of its own, so nothing is ever left mounted on the host.
void MountFullDisk(const QByteArray& folder)
{
    if (::unshare(CLONE_NEWNS) != 0 || ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0
        || ::mount("tmpfs", folder.constData(), "tmpfs", 0, "size=16k") != 0)
        ::_exit(kCannotMount);
}

Run Cli(const QStringList& args, bool asNobody = false, const QString& fullDiskAt = {})
{
    QProcess process;
    if (!fullDiskAt.isEmpty())
        process.setChildProcessModifier([folder = QFile::encodeName(fullDiskAt)] { MountFullDisk(folder); });
    QTemporaryDir reachable; // nobody may not reach the build folder (under /root, say), so runs a copy from here
    const QString program = asNobody ? reachable.filePath("zelvane-art") : QStringLiteral(ZELVANE_CLI);
    if (asNobody) { // root may write any file, so the read-only case runs as nobody
        QFile::setPermissions(reachable.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther);
        QFile::copy(QStringLiteral(ZELVANE_CLI), program);
        process.setChildProcessModifier([] { (void)::setgid(65534), (void)::setuid(65534); });
    }
    process.start(program, args);
    process.waitForFinished(60000);
    const int code = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    return {code, process.readAllStandardOutput(), process.readAllStandardError()};
}

// Every table lists three frames and an end marker, so that frames may move. Table 0's
// frame 2 has a line of odd width, table 1's frame 1 runs that overlap and a value
// beyond 16, table 2's frame 2 lies beyond the end; the rest are as the editor saves,
// table 3's frame 1 with a widened run that touches the next.
QByteArray GeneratedImage()
{
    const std::map<std::pair<int, int>, const char*> unusual = {
        {{0, 2}, "FFFE0001FF000000" "FE01FF00030405" "0000"},
        {{1, 1}, "0000000000000000" "0004000001020304" "020400001405" "0000"},
        {{3, 1}, "0005000000000000" "0004000001020300" "040600000506" "00000000" "0000"}};
    QByteArray image(0x200000, '\0');
    int freeAt = kFreeArea;
    for (int n = 0; n < kArtTableCount; ++n) {
        std::array<ConsoleColor, 15> words{};
        for (int i = 0; i < 15; ++i)
            words[size_t(i)] = Word((3 * i + n) % 32, (29 + 2 * i) % 32, (i * 7 + n) % 32);
        PutPaletteWords(image, kPalettePositions[size_t(n)], words);
        std::vector<uint32_t> entries;
        for (int f = 0; f < 3; ++f) {
            IndexGrid blob = MakeIndexGrid(9 + n % 4, 7 + f);
            for (int y = 0; y < blob.height; ++y)
                for (int x = (y + f) % 3; x < blob.width - y % 2; ++x)
                    blob.At(x, y) = (x * y + n + f) % 17;
            const auto odd = unusual.find({n, f});
            const QByteArray bytes = odd != unusual.end() ? QByteArray::fromHex(odd->second) : SpriteFrameBytes(blob, 4 - f, 2);
            entries.push_back(uint32_t(n == 2 && f == 2 ? 0x400000 : freeAt) + kCartridgeBase);
            PutBytes(image, freeAt, bytes);
            freeAt += int(bytes.size());
        }
        entries.push_back(0xFF000000u);
        PutTableEntries(image, kArtTablePositions[size_t(n)], entries);
    }
    return image;
}

QJsonArray Manifest(const QString& dir)
{
    return QJsonDocument::fromJson(FileBytes(dir + "/manifest.json")).object()["frames"].toArray();
}

QRect RectOf(const QJsonValue& line)
{
    const QJsonArray r = line["rect"].toArray();
    return r.size() == 4 ? QRect(r[0].toInt(), r[1].toInt(), r[2].toInt(), r[3].toInt()) : QRect();
}

// An edit as a paint program makes it: the frame's pixels (its rectangle, on a sheet)
// mirrored, the colour table kept.
void Mirror(const QString& dir, const QJsonValue& line)
{
    const QString file = dir + "/" + line["file"].toString();
    QImage picture(file);
    const QRect rect = line["rect"].isArray() ? RectOf(line) : picture.rect();
    const QImage part = picture.copy(rect);
    for (int y = 0; y < rect.height(); ++y)
        for (int x = 0; x < rect.width(); ++x)
            picture.setPixel(rect.left() + x, rect.top() + y, uint(part.pixelIndex(rect.width() - 1 - x, y)));
    QVERIFY(picture.save(file));
}

// The second rip shows every frame as the first did, but for the frames with lines of
// odd width (table 0's frame 2, table 1's frame 1), which gained their index-0 pixels.
void CompareRips(const QString& before, const QString& after, const QStringList& widened = {})
{
    const QJsonArray a = Manifest(before), b = Manifest(after);
    QCOMPARE(a.size(), b.size());
    for (qsizetype i = 0; i < a.size(); ++i) {
        const QString file = a[i]["file"].toString();
        QCOMPARE(b[i]["file"].toString(), file);
        QCOMPARE(b[i]["origin"], a[i]["origin"]);
        QCOMPARE(QImage(before + "/" + file) != QImage(after + "/" + file), widened.contains(file));
    }
}

// The ripped picture as other tools write it back: its colour table reversed, with its
// indices; as a 24-bit bitmap on the editor's background; as RGBA with every colour 3 off in red.
QImage Rewritten(const QImage& ripped, const QString& form)
{
    const QList<QRgb> table = ripped.colorTable();
    QImage picture = ripped;
    for (int i = 0; i < picture.colorCount(); ++i)
        if (form == "bmp" && qAlpha(table[i]) == 0)
            picture.setColor(i, qRgb(240, 240, 240));
        else if (form == "near" && qAlpha(table[i]) == 255)
            picture.setColor(i, table[i] + (qRed(table[i]) < 128 ? 0x30000 : -0x30000));
    return form == "reordered" ? picture.convertToFormat(QImage::Format_ARGB32).convertToFormat(QImage::Format_Indexed8, {table.rbegin(), table.rend()})
                               : picture.convertToFormat(form == "bmp" ? QImage::Format_RGB32 : QImage::Format_ARGB32);
}

// Inserts every ripped frame of the tables from firstTable on, appended or at its own offset.
void InsertAll(const QString& rom, const QString& dir, bool atOwnOffset = false, int firstTable = 0)
{
    for (const QJsonValue& value : Manifest(dir)) {
        const QJsonObject frame = value.toObject();
        const QStringList where = atOwnOffset ? QStringList{"--at", QString::number(frame["offset"].toInteger(), 16)} : QStringList{"--append"};
        if (frame.contains("file") && frame["table"].toInt() >= firstTable)
            QCOMPARE(Cli(QStringList{"insert", rom, QString::number(frame["table"].toInt()), QString::number(frame["slot"].toInt()),
                                     dir + "/" + frame["file"].toString()} + where).code, 0);
    }
}
}

class TestCli : public QObject {
    Q_OBJECT
    QTemporaryDir dir;
    QString rom = dir.filePath("rom.bin");

private slots:
    void init()
    {
        QFile::setPermissions(dir.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        for (const QString& old : QDir(dir.path()).entryList(QDir::Files | QDir::System))
            QFile::remove(dir.filePath(old)); // the image and its journal, so each case starts with no history
        QVERIFY(WriteFileBytes(rom, GeneratedImage()));
    }

    void ripAndInsertRoundTrip()
    {
        const QString first = dir.filePath("first"), second = dir.filePath("second"), third = dir.filePath("third");
        QCOMPARE(Cli({"rip", rom, first, "--quiet"}).code, 0);
        // Saved as the editor saves them (tables 2 on), frames inserted at their own place
        // change nothing.
        const QByteArray original = FileBytes(rom);
        InsertAll(rom, first, true, 2);
        QCOMPARE(FileBytes(rom), original);
        const QJsonArray frames = Manifest(first);
        QCOMPARE(frames.size(), 14 * 4);
        QVERIFY(frames[11].toObject().contains("reason") && !frames[11].toObject().contains("file"));
        QCOMPARE(QDir(first + "/palettes").entryList(QDir::Files).size(), 7 * 3); // tables n and n + 7 share one
        InsertAll(rom, first);
        QCOMPARE(Cli({"rip", rom, second}).code, 0);
        CompareRips(first, second, {"table00/slot002.png", "table01/slot001.png"});
        InsertAll(rom, second);
        QCOMPARE(Cli({"rip", rom, third}).code, 0);
        CompareRips(second, third);
    }

    // Every frame has a rectangle of its own on its table's sheet, in slot order, a
    // transparent pixel from its neighbours, showing what its own picture shows. Ten
    // frames mirrored on ten sheets go back as one change; the rest stay where they were.
    void sheetsImportAsOneChange()
    {
        const QString sheets = dir.filePath("sheets"), frames = dir.filePath("frames");
        QVERIFY(Cli({"rip", rom, sheets, "--sheets"}).code + Cli({"rip", rom, frames}).code == 0);
        const QJsonArray lines = Manifest(sheets), single = Manifest(frames);
        QCOMPARE(lines.size(), single.size());
        QRect previous;
        for (qsizetype i = 0; i < lines.size(); ++i) {
            const QRect rect = RectOf(lines[i]);
            QCOMPARE(rect.isValid(), single[i]["file"].isString());
            if (!rect.isValid())
                continue;
            if (lines[i]["slot"].toInt() > 0 && previous.isValid())
                QVERIFY(rect.top() > previous.bottom() + 1 || (rect.top() == previous.top() && rect.left() > previous.right() + 1));
            previous = rect;
            QCOMPARE(QImage(sheets + "/" + lines[i]["file"].toString()).copy(rect).convertToFormat(QImage::Format_ARGB32),
                     QImage(frames + "/" + single[i]["file"].toString()).convertToFormat(QImage::Format_ARGB32));
            QCOMPARE(lines[i]["origin"], single[i]["origin"]);
        }
        const QByteArray original = FileBytes(rom);
        QCOMPARE(Cli({"import", rom, sheets}).code, 0);
        QCOMPARE(FileBytes(rom), original); // a picture the slot already draws changes nothing
        QStringList edited;
        for (int t = 0; t < 10; ++t)
            Mirror(sheets, lines[4 * t + 1]), edited << single[4 * t + 1]["file"].toString();
        QCOMPARE(Cli({"import", rom, sheets}).code, 0);
        QCOMPARE(Cli({"rip", rom, dir.filePath("after")}).code, 0);
        CompareRips(frames, dir.filePath("after"), edited);
        QCOMPARE(Cli({"history", rom}).out.count('\n'), 1);
        QCOMPARE(Cli({"import", rom, sheets}).code, 0); // in step: nothing more to write
        QCOMPARE(Cli({"history", rom}).out.count('\n'), 1);
        QCOMPARE(Cli({"revert", rom, "1"}).code, 0);
        QCOMPARE(FileBytes(rom), original);
    }

    // One refused picture refuses them all, each named on a line of its own; a slot
    // another program moved since the rip is refused; rip keeps a picture edited since.
    void importIsAllOrNothing()
    {
        const QString frames = dir.filePath("frames");
        QCOMPARE(Cli({"rip", rom, frames}).code, 0);
        const QJsonArray lines = Manifest(frames);
        Mirror(frames, lines[4 * 4 + 1]);
        Mirror(frames, lines[4 * 5 + 2]);
        WriteFileBytes(frames + "/table06/slot000.png", "not a picture");
        QCOMPARE(Cli({"insert", rom, "5", "2", frames + "/table05/slot000.png", "--append"}).code, 0);
        const QByteArray moved = FileBytes(rom), manifest = FileBytes(frames + "/manifest.json");
        const Run run = Cli({"import", rom, frames});
        QVERIFY2(run.code == 1 && run.err.count('\n') == 2 && run.err.contains("table06/slot000.png: not a PNG")
                     && run.err.contains("table 5 slot 2 was changed by another program"), run.err);
        QCOMPARE(FileBytes(rom), moved);
        const Run rip = Cli({"rip", rom, frames});
        QVERIFY(rip.code == 1 && rip.err.contains("table04/slot001.png was edited since"));
        QCOMPARE(FileBytes(frames + "/manifest.json"), manifest);
    }

    void palettesRoundTrip()
    {
        // Table 11 shares table 4's stored palette: what is imported there exports again the
        // same (a TPL file holds components 0 and 1 alike, so its colours may not).
        for (const char* format : {"gpl", "act", "tpl", "png", "bmp"}) {
            const QString file = dir.filePath(QStringLiteral("p.%1").arg(format)), again = dir.filePath(QStringLiteral("q.%1").arg(format));
            QCOMPARE(Cli({"palette", "export", rom, "4", file}).code + Cli({"palette", "import", rom, "11", file}).code, 0);
            QCOMPARE(Cli({"palette", "export", rom, "4", again}).code, 0);
            QCOMPARE(FileBytes(again), FileBytes(file));
        }
    }

    void sameBytesAsTheEditor()
    {
        // The editor saves black as slot 1, insert as the lowest slot that shows it: slot 1 here.
        QByteArray image = GeneratedImage();
        image[kPalettePositions[5]] = image[kPalettePositions[5] + 1] = 0;
        SessionFixture editor;
        QVERIFY(WriteFileBytes(editor.romPath, image) && WriteFileBytes(rom, image));
        editor.Show(5, 1);
        editor.session.PickColorSlot(PaletteBoxUnder(PalboxRect(9).center()));
        editor.Stroke({40, 45});
        const QString picture = dir.filePath("painted.png");
        QVERIFY(editor.state.preview.image.save(picture));
        editor.script.Answer(Reply::Yes);
        editor.session.SaveArt();
        QCOMPARE(Cli({"insert", rom, "5", "1", picture, "--append"}).code, 0);
        QCOMPARE(FileBytes(rom), editor.RomBytes());
    }

    // A patch of the image's changes (the first of which grows it) makes them on a clean
    // copy as one change that revert 1 undoes; a patch back to the clean image shrinks it.
    void patchesRoundTrip()
    {
        const QByteArray clean = FileBytes(rom);
        const QString picture = dir.filePath("ok.png"), palette = dir.filePath("p.gpl"), copy = dir.filePath("copy.bin");
        QImage black(6, 4, QImage::Format_RGB32);
        black.fill(Qt::black);
        QVERIFY(black.save(picture));
        QCOMPARE(Cli({"insert", rom, "4", "0", picture, "--append"}).code + Cli({"palette", "export", rom, "2", palette}).code
                     + Cli({"palette", "import", rom, "6", palette}).code, 0);
        const QByteArray changed = FileBytes(rom);
        for (const QString patch : {"p.bps", "p.ips", "late.ips"}) {
            QVERIFY(WriteFileBytes(copy, clean) && (!QFile::exists(copy + ".zelvane-journal") || QFile::remove(copy + ".zelvane-journal")));
            const QStringList from = patch.startsWith("late") ? QStringList{"--from", "2"} : QStringList();
            QCOMPARE(Cli(QStringList{"patch", "create", rom, dir.filePath(patch)} + from).code, 0);
            QCOMPARE(Cli({"patch", "apply", copy, dir.filePath(patch)}).code, 0);
            // Change 2 alone: the palette import.
            const int at = kPalettePositions[6];
            QCOMPARE(FileBytes(copy), from.isEmpty() ? changed : QByteArray(clean).replace(at, 30, changed.mid(at, 30)));
            QCOMPARE(Cli({"history", copy}).out.count('\n'), 1);
            QCOMPARE(Cli({"revert", copy, "1"}).code, 0);
            QCOMPARE(FileBytes(copy), clean);
        }
        QCOMPARE(Cli({"patch", "create", copy, dir.filePath("back.bps"), "--source", rom}).code, 0);
        for (const int code : {0, 1}) // the second time, the image is no longer the one it was made for
            QCOMPARE(Cli({"patch", "apply", rom, dir.filePath("back.bps")}).code, code);
        QCOMPARE(FileBytes(rom), clean);
    }

    void insertReadsByColour_data()
    {
        QTest::addColumn<QString>("form"); // as Rewritten makes it
        QTest::addColumn<QStringList>("options"); // --exact refuses, the rest are taken
        QTest::addColumn<QString>("said");
        QTest::newRow("colour table reordered") << "reordered" << QStringList{} << "already shows this picture";
        QTest::newRow("24-bit bitmap") << "bmp" << QStringList{} << "already shows this picture";
        QTest::newRow("colours 3 off") << "near" << QStringList{"--match", "perceptual"} << "have no exact palette colour; the farthest lies 3.0 from";
        QTest::newRow("colours 3 off, exactly") << "near" << QStringList{"--match", "perceptual", "--exact"} << "lies 3.0 from the slot colour it was matched to (Euclidean distance in 8-bit RGB); --exact refuses them";
    }

    void insertReadsByColour()
    {
        QFETCH(QString, form);
        QFETCH(QStringList, options);
        QFETCH(QString, said);
        QTemporaryDir art;
        QCOMPARE(Cli({"rip", rom, art.filePath("rip"), "--tables", "2"}).code, 0);
        const QJsonObject frame = Manifest(art.filePath("rip"))[0].toObject();
        const QString picture = art.filePath(form == "bmp" ? "pic.bmp" : "pic.png");
        QVERIFY(Rewritten(QImage(art.filePath("rip/" + frame["file"].toString())), form).save(picture));
        const QByteArray before = FileBytes(rom);
        // At the frame's own place and origin: the same frame is not written again.
        const Run run = Cli(QStringList{"insert", rom, "2", "0", picture, "--at", QString::number(frame["offset"].toInteger(), 16), "--origin",
                                        QStringLiteral("%1,%2").arg(frame["origin"][0].toInt()).arg(frame["origin"][1].toInt())} + options);
        QVERIFY2(run.code == int(options.contains("--exact")) && run.err.contains(said.toUtf8()), run.err);
        QCOMPARE(run.err.count('\n'), form == "near" && !options.contains("--exact") ? 2 : 1); // the note only for inexact colours
        QCOMPARE(FileBytes(rom), before);
    }

    void everyCommandAnswersHelp()
    {
        for (const QString command : {"tables", "rip", "insert", "import", "palette", "palette export", "palette import", "history", "revert", "patch", "patch create", "patch apply"})
            QCOMPARE(Cli(command.split(' ') << "--help").code, 0); // without its arguments, a command would exit 2
    }

    void refusalsWriteNothing_data()
    {
        QTest::addColumn<QStringList>("args"); // ROM and DIR stand for the image and the folder
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("said");
        QTest::newRow("not a picture") << QStringList{"insert", "ROM", "0", "0", "DIR/bad.png", "--append"} << 1 << "bad.png: not a PNG";
        QTest::newRow("101 runs") << QStringList{"insert", "ROM", "0", "0", "DIR/runs.png", "--append"} << 1 << "more than 100 runs";
        QTest::newRow("index beyond its colours") << QStringList{"insert", "ROM", "0", "0", "DIR/short.bmp", "--append"} << 1 << "own colour table has 1";
        QTest::newRow("origin out of reach") << QStringList{"insert", "ROM", "0", "0", "DIR/ok.png", "--append", "--origin", "-2147483648,0"} << 1 << "origin given lies more than 32768";
        QTest::newRow("recorded origin out of reach") << QStringList{"insert", "ROM", "0", "0", "DIR/far/ok.png", "--append"} << 1 << "recorded in manifest.json";
        QTest::newRow("manifest three folders up") << QStringList{"insert", "ROM", "0", "0", "DIR/up3/a/b/c/runs.png", "--append"} << 1 << "recorded in manifest.json";
        QTest::newRow("manifest four folders up") << QStringList{"insert", "ROM", "0", "0", "DIR/up4/a/b/c/d/runs.png", "--append"} << 1 << "more than 100 runs";
        QTest::newRow("nearest manifest lists another") << QStringList{"insert", "ROM", "0", "0", "DIR/other/a/runs.png", "--append"} << 1 << "more than 100 runs";
        QTest::newRow("nearest manifest a FIFO") << QStringList{"insert", "ROM", "0", "0", "DIR/fifo/a/runs.png", "--append"} << 1 << "more than 100 runs";
        QTest::newRow("PNG index beyond its colours") << QStringList{"insert", "ROM", "0", "0", "DIR/short.png", "--append"} << 1 << "uses colour index 5, and its own colour table has 3";
        QTest::newRow("slot not listed") << QStringList{"insert", "ROM", "4", "4", "DIR/ok.png", "--append"} << 1 << "table 4 lists no slot 4";
        QTest::newRow("beyond the end") << QStringList{"insert", "ROM", "4", "0", "DIR/ok.png", "--at", "0x300000"} << 1 << "lies beyond the end";
        QTest::newRow("read-only image") << QStringList{"insert", "ROM", "4", "0", "DIR/ok.png", "--append"} << 1 << "read-only";
        QTest::newRow("missing image") << QStringList{"tables", "DIR/none.bin"} << 1 << "Cannot open none.bin: No such file";
        QTest::newRow("folder cannot be made") << QStringList{"rip", "ROM", "DIR/ok.png/out"} << 1 << "cannot be created";
        QTest::newRow("rip over an earlier one") << QStringList{"rip", "ROM", "DIR/stale"} << 1 << "stale/table00: the folder cannot be created";
        QTest::newRow("full disk") << QStringList{"rip", "ROM", "DIR/full"} << 1 << "No space left on device";
        QTest::newRow("no position") << QStringList{"insert", "ROM", "4", "0", "DIR/ok.png"} << 2 << "--append or --at";
        QTest::newRow("not a command") << QStringList{"rips", "ROM"} << 2 << "unknown command rips";
        QTest::newRow("patch of no history") << QStringList{"patch", "create", "ROM", "DIR/p.bps"} << 1 << "keeps no change";
        QTest::newRow("not a patch's name") << QStringList{"patch", "apply", "ROM", "DIR/ok.png"} << 2 << "must end in .bps or .ips";
    }

    void refusalsWriteNothing()
    {
        QFETCH(QStringList, args);
        QFETCH(int, code);
        QFETCH(QString, said);
        QImage ok(202, 1, QImage::Format_RGB32), runs(202, 1, QImage::Format_RGB32);
        ok.fill(Qt::black);
        runs.fill(qRgb(240, 240, 240)); // the background: every other pixel a run of its own
        for (int x = 0; x < 202; x += 2)
            runs.setPixel(x, 0, qRgb(0, 0, 0));
        QVERIFY(ok.copy(0, 0, 4, 1).save(dir.filePath("ok.png")) && runs.save(dir.filePath("runs.png")));
        WriteFileBytes(dir.filePath("bad.png"), "\x89PNG\r\n\x1A\nnot really");
        QByteArray shortTable = FourBitBitmap(SixteenColors(), 4, 2, {0, 1, 2, 3, 4, 5, 1, 1}, BmpRows::BottomUp);
        SetField(shortTable, 46, 1, 4); // one colour in use, as a fuzzed bitmap declared
        WriteFileBytes(dir.filePath("short.bmp"), shortTable);
        QImage shortPng(4, 1, QImage::Format_Indexed8);
        shortPng.setColorTable({qRgb(0, 0, 0), qRgb(9, 9, 9), qRgb(99, 99, 99)});
        shortPng.fill(1);
        shortPng.scanLine(0)[3] = 5; // Qt writes the index as it stands, with the table of three
        QVERIFY(shortPng.save(dir.filePath("short.png")));
        // Manifests that give a picture an origin out of reach.
        const auto manifest = [&](const QString& folder, const QString& file, const char* origin) {
            QDir().mkpath(dir.filePath(folder));
            WriteFileBytes(dir.filePath(folder + "/manifest.json"),
                           QStringLiteral(R"({"frames": [{"file": "%1", "origin": [%2]}]})").arg(file, origin).toUtf8());
        };
        manifest("far", "ok.png", "-2147483648, 0");
        manifest("up3", "a/b/c/runs.png", "1e10, 0"); // insert reads only the nearest, up to three folders up
        manifest("up4", "a/b/c/d/runs.png", "1e10, 0");
        manifest("other", "a/runs.png", "1e10, 0");
        manifest("other/a", "x.png", "0, 0");
        manifest("fifo", "a/runs.png", "1e10, 0");
        for (const QString copy : {"far/ok.png", "up3/a/b/c/runs.png", "up4/a/b/c/d/runs.png", "other/a/runs.png", "fifo/a/runs.png"})
            QDir().mkpath(QFileInfo(dir.filePath(copy)).path()), QFile::copy(dir.filePath(QFileInfo(copy).fileName()), dir.filePath(copy));
        ::mkfifo(QFile::encodeName(dir.filePath("fifo/a/manifest.json")), 0600);
        manifest("stale", "table00/slot000.png", "0, 0"); // an earlier rip's, whose folder a file now blocks
        WriteFileBytes(dir.filePath("stale/table00"), {});
        const bool full = QString(QTest::currentDataTag()) == "full disk";
        QVERIFY(QDir().mkpath(dir.filePath("full")));
        const bool readOnly = QString(QTest::currentDataTag()) == "read-only image";
        if (readOnly)
            QVERIFY(QFile::setPermissions(rom, QFile::ReadOwner | QFile::ReadOther) && QFile::setPermissions(dir.path(), QFile::ReadOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther));
        const QByteArray before = FileBytes(rom);
        const Run run = Cli(args.replaceInStrings("ROM", rom).replaceInStrings("DIR", dir.path()), readOnly,
                            full ? dir.filePath("full") : QString());
        if (run.code == kCannotMount)
            QSKIP("mounting a small tmpfs needs root");
        QVERIFY2(run.code == code && run.err.contains(said.toUtf8()), qPrintable(args.join(" ") + " -> " + run.err + run.out));
        QVERIFY(run.err.count('\n') == (code == 1 ? 1 : 2) && run.out.isEmpty());
        QVERIFY(args[0] != "rip" || !QFile::exists(args[2] + "/manifest.json")); // no manifest of what is not there
        QCOMPARE(FileBytes(rom), before);
    }
};

QTEST_GUILESS_MAIN(TestCli)
#include "test_cli.moc"
