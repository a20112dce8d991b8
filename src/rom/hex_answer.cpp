#include "rom/hex_answer.h"

HexAnswer ReadHexAnswer(const QString& text)
{
    HexAnswer answer;
    for (const QChar ch : text) {
        if (ch == u' ' || ch == u'\t' || ch == u'\n' || ch == u'\r')
            continue;
        const int digit = ch.isDigit() && ch.unicode() < 128 ? ch.unicode() - '0'
                          : (ch >= u'a' && ch <= u'f') ? ch.unicode() - 'a' + 10
                          : (ch >= u'A' && ch <= u'F') ? ch.unicode() - 'A' + 10
                                                       : -1;
        if (digit < 0)
            break;
        ++answer.digits;
        if (answer.value >> 60)
            answer.tooLarge = true;
        answer.value = (answer.value << 4) | uint64_t(digit);
    }
    return answer;
}
