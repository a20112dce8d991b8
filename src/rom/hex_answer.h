#pragma once
// Reading what the user typed as a hexadecimal number: blanks, tabs and line breaks
// are skipped, and the digits from the start up to the first other character count.
#include <QString>
#include <cstdint>

struct HexAnswer {
    int digits = 0;       // how many hexadecimal digits led the answer
    uint64_t value = 0;   // their value, when it fits 64 bits
    bool tooLarge = false; // more significant digits than 64 bits hold
};

HexAnswer ReadHexAnswer(const QString& text);
