// Opening an arbitrary image and drawing every frame its lists show. The input places
// pieces in an otherwise empty image, so that the fuzzer reaches the tables, the
// palettes and the frames they point at: a length, then pieces of a position, a size
// and the bytes.
#include "app/open_rom.h"
#include "fuzz_input.h"
#include "rom/art_lists.h"
#include "view/frame_render.h"

#include <QtEndian>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static MemoryFile file;
    if (size < 4)
        return 0;
    const uint32_t length = qFromBigEndian<uint32_t>(data) % 0x300000;
    (void)::ftruncate(file.fd, 0);
    (void)::ftruncate(file.fd, off_t(length));
    for (size_t at = 4; at + 5 <= size;) {
        const uint32_t position = qFromBigEndian<uint32_t>(data + at) % 0x300000;
        const size_t count = std::min<size_t>(data[at + 4], size - at - 5);
        (void)::pwrite(file.fd, data + at + 5, count, off_t(position));
        at += 5 + count;
    }
    static EditorState state; // its pictures are large; every field the open reads is read anew
    OpenReport report;
    QString error;
    if (!OpenRomImage(state, file.Path(), report, error))
        return 0;
    const int zoom = 1 + data[3] % 8;
    // The first frames of each list: later ones are read the same way, and a list of
    // noise runs to 151.
    for (const ArtTable& table : state.document.tables)
        for (int slot = 0; slot < std::min(ListedSlotCount(table), 4); ++slot) {
            ReadFrame(state.document.file, state.readPosition, state.currentFrame, table.pointers[size_t(slot)]);
            DrawFrame({state.canvas, state.preview, zoom}, state.currentFrame, state.document.palettes[0], kPictureBackground);
            IndexedFramePicture(RenderFramePixels(state.currentFrame), state.document.palettes[0]);
        }
    return 0;
}
