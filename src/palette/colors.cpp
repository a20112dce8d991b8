#include "palette/colors.h"

const std::array<uint8_t, 32> kComponentTo8 = {
    0,   8,   16,  25,  33,  41,  50,  58,  66,  74,  82,  91,  99,  107, 116, 124,
    132, 140, 148, 157, 165, 173, 182, 190, 198, 206, 214, 223, 231, 239, 248, 255,
};

ScreenColor WordToScreen(ConsoleColor word)
{
    return MakeScreenColor(kComponentTo8[word & 31], kComponentTo8[(word >> 5) & 31],
                           kComponentTo8[(word >> 10) & 31]);
}

ConsoleColor ScreenToConsole(ScreenColor color)
{
    return ConsoleColor(ComponentTo5(ScreenRed(color)) | (ComponentTo5(ScreenGreen(color)) << 5)
                        | (ComponentTo5(ScreenBlue(color)) << 10));
}
