// zelvane-art palette export and import: a table's palette to and from other tools'
// palette files.
#include "cli/cli.h"
#include "exchange/palette_files.h"
#include "exchange/uncompressed_art.h"
#include "palette/palette_change.h"

#include <QDir>
#include <QFileInfo>
#include <cstdio>

namespace {
const CommandHelp kPaletteHelp{
    "palette", "export|import ROM TABLE FILE", "Write a table's palette to FILE, or take its colours from FILE.",
    "  export   write the palette of table TABLE of ROM to FILE\n"
    "  import   take the palette of table TABLE of ROM from FILE\n\n"
    "FILE is a .gpl, .act or .tpl palette, or an indexed .png or .bmp. For more, see\n"
    "zelvane-art palette export --help and zelvane-art palette import --help.",
    0};
const CommandHelp kExportHelp{
    "palette export", "ROM TABLE FILE", "Write the palette of table TABLE of ROM to FILE.",
    "The format follows FILE's extension: .gpl (GIMP), .act (Adobe colour table), .tpl (the TPL\n"
    "palette the uncompressed export writes), or .png or .bmp (a 16 x 1 indexed picture). Slots 0\n"
    "to 15 are written in the colours the editor shows.",
    3};
const CommandHelp kImportHelp{
    "palette import", "ROM TABLE FILE", "Take the palette of table TABLE of ROM from FILE.",
    "FILE is read by its extension, as palette export writes it; an indexed .png or .bmp gives its\n"
    "colour table. The first 16 colours become slots 0 to 15; slots 1 to 15 are written into the\n"
    "image as the editor's palette edit writes them, each colour turned into the nearest colour word.",
    3};

std::optional<int> TableArgument(const QString& text)
{
    const std::optional<int> table = DecimalArgument(text);
    return table && *table >= 0 && *table < kArtTableCount ? table : std::nullopt;
}

int Export(const CliImage& image, int table, const QString& file)
{
    QString errorText;
    const std::optional<QByteArray> bytes =
        PaletteFileBytes(image.document.palettes[size_t(table)], file, QStringLiteral("Zelvane table %1").arg(table), errorText);
    return bytes && WriteWholeFile(file, *bytes, errorText) ? kDone : Fail(errorText);
}

int Import(CliImage& image, int table, const QString& file)
{
    QString errorText;
    const std::optional<PaletteColors> colors = ReadPaletteFile(file, errorText);
    if (!colors)
        return Fail(errorText);
    Palette edited = image.document.palettes[size_t(table)];
    std::copy(colors->begin(), colors->end(), edited.colors.begin());
    return ChangeImage(image, QStringLiteral("palette import %1").arg(QFileInfo(file).fileName()), PalettePlanner(edited),
                       QStringLiteral("The palette was not written: %1"));
}
}

int RunPalette(const QStringList& args)
{
    const QString action = args.value(0);
    if (action == "--help" || action == "-help") { // as the parser of every other command takes it
        std::fputs(qPrintable(HelpText(kPaletteHelp)), stdout);
        return kDone;
    }
    if (action != "export" && action != "import") {
        std::fprintf(stderr, "zelvane-art palette: say export or import\nUsage: zelvane-art palette %s\n", qPrintable(kPaletteHelp.synopsis));
        return kUsage;
    }
    const CommandHelp& help = action == "export" ? kExportHelp : kImportHelp;
    QCommandLineParser parser;
    if (const int exit = ParseCommand(parser, args.mid(1), help); exit >= 0)
        return exit;
    const QStringList positional = parser.positionalArguments();
    const std::optional<int> table = TableArgument(positional[1]);
    if (!table) {
        std::fprintf(stderr, "zelvane-art %s: TABLE is a number from 0 to 13\n", qPrintable(help.name));
        return kUsage;
    }
    const std::unique_ptr<CliImage> image = OpenImage(positional[0], action == "import");
    if (!image)
        return kRefused;
    return action == "export" ? Export(*image, *table, positional[2]) : Import(*image, *table, positional[2]);
}
