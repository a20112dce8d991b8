// zelvane-art tables: the 14 art tables, how each list ended, and the frames it lists.
#include "cli/cli.h"
#include "art/art_frame.h"
#include "rom/art_lists.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cstdio>

namespace {
const CommandHelp kHelp{
    "tables", "ROM [--json]", "List the 14 art tables of ROM and the frames each lists.",
    "For each table: its number, its position, and how its list ended (end marker, position rule,\n"
    "capacity, or end of file). For each frame the frame list shows: the slot, the offset the line\n"
    "shows as an unsigned 32-bit number, the header values left, right, top and bottom, the number\n"
    "of runs and the length in bytes; frames that cannot be read whole are flagged.\n\n"
    "  --json  one JSON document instead of text",
    1};

QString EndText(TableEnd end)
{
    switch (end) {
    case TableEnd::EndMarker: return QStringLiteral("end marker");
    case TableEnd::FirstFrameReached: return QStringLiteral("position rule");
    case TableEnd::CapacityReached: return QStringLiteral("capacity");
    case TableEnd::EndOfFile: break;
    }
    return QStringLiteral("end of file");
}

QJsonObject FrameJson(const RomFile& rom, int slot, int32_t offset)
{
    ArtFrame frame;
    const int64_t bytes = ReadStoredFrame(rom, offset, frame);
    return {{"slot", slot}, {"offset", double(uint32_t(offset))}, {"left", frame.left}, {"right", frame.right},
            {"top", frame.top}, {"bottom", frame.bottom}, {"runs", frame.lastLine + 1},
            {"bytes", double(bytes)}, {"whole", bytes > 0}};
}

QJsonObject TableJson(const RomDocument& state, int n)
{
    ArtTable reread;
    int32_t readPosition = 0;
    const TableEnd end = ReadArtTable(state.file, readPosition, reread, kArtTablePositions[size_t(n)]);
    const ArtTable& table = state.tables[size_t(n)];
    QJsonArray frames;
    for (int slot = 0; slot < ListedSlotCount(table); ++slot)
        frames.append(FrameJson(state.file, slot, table.pointers[size_t(slot)]));
    return {{"table", n}, {"position", table.position}, {"ended", EndText(end)}, {"frames", frames}};
}

void PrintText(const QJsonArray& tables)
{
    for (const QJsonValue& value : tables) {
        const QJsonObject t = value.toObject();
        const QJsonArray frames = t["frames"].toArray();
        std::printf("table %d at %s: %d frames, list end: %s\n", t["table"].toInt(),
                    qPrintable(ListLineText(t["position"].toInt())), int(frames.size()), qPrintable(t["ended"].toString()));
        for (const QJsonValue& f : frames) {
            const QJsonObject o = f.toObject();
            const auto offset = uint32_t(o["offset"].toDouble());
            if (!o["whole"].toBool()) {
                std::printf("  slot %3d  offset %10u (%s)  cannot be read whole\n", o["slot"].toInt(), offset,
                            qPrintable(ListLineText(int32_t(offset))));
                continue;
            }
            std::printf("  slot %3d  offset %10u (%s)  left %d right %d top %d bottom %d  %d runs  %lld bytes\n",
                        o["slot"].toInt(), offset, qPrintable(ListLineText(int32_t(offset))), o["left"].toInt(),
                        o["right"].toInt(), o["top"].toInt(), o["bottom"].toInt(), o["runs"].toInt(),
                        qint64(o["bytes"].toDouble()));
        }
    }
}
}

int RunTables(const QStringList& args)
{
    QCommandLineParser parser;
    parser.addOption(QCommandLineOption(QStringLiteral("json")));
    if (const int exit = ParseCommand(parser, args, kHelp); exit >= 0)
        return exit;
    const std::unique_ptr<CliImage> image = OpenImage(parser.positionalArguments()[0], false);
    if (!image)
        return kRefused;
    QJsonArray tables;
    for (int n = 0; n < kArtTableCount; ++n)
        tables.append(TableJson(image->document, n));
    if (parser.isSet(QStringLiteral("json")))
        std::fputs(QJsonDocument(QJsonObject{{"tables", tables}}).toJson(QJsonDocument::Indented).constData(), stdout);
    else
        PrintText(tables);
    return kDone;
}
