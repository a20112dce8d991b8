// The readers of typed answers: positions and colours in hexadecimal.
#include "art/save_art.h"
#include "palette/palette_boxes.h"
#include "rom/hex_answer.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString answer = QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size));
    const HexAnswer read = ReadHexAnswer(answer);
    QString error;
    const int64_t length = int64_t(read.value & 0xFFFFFF);
    const std::optional<int32_t> position = TypedSavePosition(answer, length, error);
    if ((position && (*position < 0 || *position > length)) || TypedColor(answer) > 0xFFFFFF)
        std::abort();
    return 0;
}
