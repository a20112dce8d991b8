// BPS and IPS patches: round trips read back by small readers written here from the
// formats' descriptions, their size, and the patches that must be refused.
#include "exchange/patch_formats.h"
#include "rom/journal_format.h"

#include <QtEndian>
#include <QtTest>

Q_DECLARE_METATYPE(PatchFormat)

namespace {
constexpr int kEofOffset = 0x454F46;

// "PATCH", records (3-byte offset, 2-byte size, the bytes; size 0: 2-byte count, one
// byte), "EOF", and the image's new length when it got shorter. Big-endian.
QByteArray ReadIps(const QByteArray& patch, QByteArray image)
{
    int at = 5;
    const auto take = [&](int width) {
        int value = 0;
        while (width-- > 0)
            value = value << 8 | uchar(patch.at(at++));
        return value;
    };
    for (int offset; (offset = take(3)) != kEofOffset;) {
        const int size = take(2);
        const QByteArray data = size ? patch.mid(at, size) : QByteArray(take(2), patch.at(at));
        at += size ? size : 1;
        image = image.leftJustified(offset + data.size(), '\0').replace(offset, data.size(), data);
    }
    return at + 3 == patch.size() ? image.left(take(3)) : image;
}

// body with the CRC-32s of source, target and itself so far, little-endian.
QByteArray Sealed(const QByteArray& body, const QByteArray& source, const QByteArray& target)
{
    QByteArray patch = body, crc(4, '\0');
    for (const QByteArray* part : std::initializer_list<const QByteArray*>{&source, &target, &patch}) {
        qToLittleEndian(Crc32(*part), crc.data());
        patch += crc;
    }
    return patch;
}

// "BPS1", numbers of seven bits a byte, low first, the last byte's high bit set, each
// further byte adding one more: source, target and metadata sizes, the metadata, then
// actions (length - 1) << 2 | kind, copies moving their own position by a signed offset
// whose low bit is the sign; then three CRC-32s. Anything amiss gives "bad".
QByteArray ReadBps(const QByteArray& patch, const QByteArray& source)
{
    qsizetype at = 4;
    const auto number = [&] {
        quint64 value = 0;
        for (quint64 shift = 1;; shift <<= 7, value += shift) {
            value += (uchar(patch.at(at)) & 0x7F) * shift;
            if (uchar(patch.at(at++)) & 0x80)
                return value;
        }
    };
    const auto moved = [&](qsizetype& position) {
        const quint64 offset = number();
        return position += (offset & 1 ? -1 : 1) * qsizetype(offset >> 1);
    };
    const bool sourceFits = number() == quint64(source.size());
    const qsizetype targetSize = qsizetype(number());
    at += qsizetype(number());
    QByteArray target;
    for (qsizetype sourceAt = 0, targetAt = 0; at < patch.size() - 12;) {
        const quint64 action = number();
        qsizetype length = qsizetype(action >> 2) + 1;
        if ((action & 3) == 0)
            target += source.mid(target.size(), length);
        else if ((action & 3) == 1)
            target += patch.mid(at, length), at += length;
        else if ((action & 3) == 2)
            target += source.mid(moved(sourceAt), length), sourceAt += length;
        else
            for (moved(targetAt); length-- > 0;)
                target += target.at(targetAt++);
    }
    const bool sealed = patch == Sealed(patch.chopped(12), source, target);
    return sourceFits && sealed && target.size() == targetSize ? target : "bad";
}

QByteArray Pattern(int size)
{
    QByteArray bytes(size, '\0');
    for (int i = 0; i < size; ++i)
        bytes[i] = char(i * 7 + i / 251);
    return bytes;
}

// bytes with each byte in the ranges [from, to) turned over.
QByteArray Changed(QByteArray bytes, std::initializer_list<std::pair<int, int>> ranges)
{
    for (const auto& [from, to] : ranges)
        for (int i = from; i < to; ++i)
            bytes[i] = char(~bytes[i]);
    return bytes;
}
}

class TestPatches : public QObject {
    Q_OBJECT

private slots:
    void roundTrips_data()
    {
        QTest::addColumn<QByteArray>("source");
        QTest::addColumn<QByteArray>("target");
        const QByteArray some = Pattern(5000);
        QTest::newRow("same length") << some << Changed(some, {{10, 20}, {100, 101}, {103, 104}, {4000, 4100}});
        QTest::newRow("growing") << some << Changed(some, {{0, 3}}) + Pattern(3000);
        QTest::newRow("shrinking") << some << Changed(some, {{7, 8}}).left(1234);
        QTest::newRow("from nothing") << QByteArray() << some;
        QTest::newRow("to nothing") << some << QByteArray();
        QTest::newRow("a run over 65535 bytes") << Pattern(200000) << Changed(Pattern(200000), {{10, 80010}});
        const QByteArray large = Pattern(kEofOffset + 50);
        QTest::newRow("a change at EOF's offset") << large << Changed(large, {{kEofOffset, kEofOffset + 10}});
    }

    // Each patch holds little more than what changed, and gives the target through the
    // readers above and through the program's own.
    void roundTrips()
    {
        QFETCH(QByteArray, source);
        QFETCH(QByteArray, target);
        const auto differs = [&](qsizetype i) { return i >= source.size() || source[i] != target[i]; };
        qsizetype changed = 0, runs = 0;
        for (qsizetype i = 0; i < target.size(); ++i)
            changed += differs(i), runs += differs(i) && (i == 0 || !differs(i - 1));
        QString error;
        for (const PatchFormat format : {PatchFormat::Bps, PatchFormat::Ips}) {
            const QByteArray patch = CreatePatch(format, source, target, error).value_or("refused");
            QVERIFY2(patch.size() <= changed + 12 * runs + 32, qPrintable(QString::number(patch.size())));
            QVERIFY((format == PatchFormat::Bps ? ReadBps(patch, source) : ReadIps(patch, source)) == target);
            QVERIFY(ApplyPatch(format, patch, source, error) == target);
        }
    }

    void applying_data()
    {
        QTest::addColumn<PatchFormat>("format");
        QTest::addColumn<QByteArray>("patch");
        QTest::addColumn<QByteArray>("source");
        QTest::addColumn<QString>("made"); // or, when it is refused, what the refusal says
        const QByteArray letters = "ABCDEFGH", made = "EFGHEFGHEFAB";
        // Copies from the source 4 on, from the target's start over what they write, and
        // from 8 back in the source.
        QTest::newRow("bps copies") << PatchFormat::Bps << Sealed(QByteArray::fromHex("42505331888C80" "8E88" "9780" "8691"), letters, made)
                                    << letters << QString(made);
        QTest::newRow("ips repeats, grows and cuts") << PatchFormat::Ips << QByteArray::fromHex("5041544348" "00000200000003" "7A" "00000900027879" "454F46" "00000A")
                                                     << letters << QString::fromLatin1("ABzzzFGH\0x", 10);
        const QByteArray patch = CreateBps(Pattern(900), Pattern(1000)), wrongSum = Sealed(patch.chopped(12), Pattern(900), "?");
        QTest::newRow("bps for another image") << PatchFormat::Bps << patch << Changed(Pattern(900), {{5, 6}}) << "made for another image";
        QTest::newRow("bps for a longer image") << PatchFormat::Bps << patch << Pattern(901) << "made for another image";
        QTest::newRow("bps damaged") << PatchFormat::Bps << Changed(patch, {{50, 51}}) << Pattern(900) << "damaged";
        QTest::newRow("bps cut short") << PatchFormat::Bps << patch.chopped(1) << Pattern(900) << "damaged";
        QTest::newRow("bps making what fails its check") << PatchFormat::Bps << wrongSum << Pattern(900) << "damaged";
        QTest::newRow("bps reading past the source") << PatchFormat::Bps << Sealed(QByteArray::fromHex("42505331828480" "8C"), "AB", "ABCD")
                                                     << QByteArray("AB") << "damaged";
        QTest::newRow("ips cut inside a record") << PatchFormat::Ips << QByteArray::fromHex("5041544348" "0000100005" "6162") << letters << "damaged";
        QTest::newRow("ips without EOF") << PatchFormat::Ips << QByteArray::fromHex("5041544348" "000001000161") << letters << "damaged";
        QTest::newRow("ips cut to beyond its end") << PatchFormat::Ips << QByteArray::fromHex("5041544348" "454F46" "000009") << letters << "damaged";
        QTest::newRow("not ips") << PatchFormat::Ips << patch << letters << "not an IPS patch";
    }

    void applying()
    {
        QFETCH(PatchFormat, format);
        QFETCH(QByteArray, patch);
        QFETCH(QByteArray, source);
        QFETCH(QString, made);
        QString error;
        const std::optional<QByteArray> target = ApplyPatch(format, patch, source, error);
        QVERIFY2(target ? *target == made.toLatin1() : error.contains(made), qPrintable(error));
    }
};

QTEST_GUILESS_MAIN(TestPatches)
#include "test_patches.moc"
