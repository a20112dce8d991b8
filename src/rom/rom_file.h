#pragma once
// The open ROM image: a file kept open for positioned reads and writes in place.
// The image is never loaded whole; its length changes only to put back what a change
// appended or cut.
#include <QString>
#include <cstdint>

struct RomFile {
    int fd = -1;
    bool writable = false;
    QString fileName;
};

// Opens for reading and writing; falls back to read-only when the file cannot be
// written. Returns false and fills errorText when it cannot be opened at all.
bool OpenRomFile(RomFile& rom, const QString& fileName, QString& errorText);
void CloseRomFile(RomFile& rom);
bool IsRomOpen(const RomFile& rom);

// Current length in bytes, or -1 when it cannot be asked.
int64_t RomLength(const RomFile& rom);

// Reads up to count bytes at position; returns how many bytes were read
// (fewer at the end of the file, 0 for a position outside it).
int64_t ReadRomBytes(const RomFile& rom, int64_t position, void* buffer, int64_t count);

// Writes all count bytes at position. Returns false (with errorText) when the image
// is read-only, the position is negative, or the system refuses part of the write.
bool WriteRomBytes(RomFile& rom, int64_t position, const void* data, int64_t count, QString& errorText);

// Sets the file's length: cuts back what a change appended, or puts back what it cut.
bool TruncateRom(RomFile& rom, int64_t length, QString& errorText);

// Flushes the image's written bytes to the disk (fdatasync).
bool SyncRom(const RomFile& rom, QString& errorText);

// Every write to the image and to its journal: all count bytes at position.
bool WriteFileAt(int fd, int64_t position, const void* data, int64_t count, QString& errorText);
bool SyncFile(int fd, QString& errorText);

// A seam for tests: the nth write from now on (1 for the next) fails, having written
// nothing, or half its bytes first, or reporting a full disk; or it is done whole and
// the process is killed right after it.
enum class WriteFault { Fails, WritesShort, DiskFull, KillsAfter };
void InjectWriteFault(int nth, WriteFault fault);
void ClearWriteFault();

// Big-endian helpers over a byte buffer.
inline uint16_t BigEndian16(const uint8_t* p) { return uint16_t((p[0] << 8) | p[1]); }
inline uint32_t BigEndian32(const uint8_t* p) {
    return (uint32_t(p[0]) << 24) | (uint32_t(p[1]) << 16) | (uint32_t(p[2]) << 8) | uint32_t(p[3]);
}
inline void PutBigEndian16(uint8_t* p, uint16_t v) { p[0] = uint8_t(v >> 8); p[1] = uint8_t(v); }
inline void PutBigEndian32(uint8_t* p, uint32_t v) {
    p[0] = uint8_t(v >> 24); p[1] = uint8_t(v >> 16); p[2] = uint8_t(v >> 8); p[3] = uint8_t(v);
}

// Every change, and putting back an interrupted one, holds the image's exclusive lock:
// flock on the image itself, which is never renamed, so every name of it shares one
// lock. The lock is taken through a descriptor of its own, so that it dies with the
// process that holds it even where a child shares the image's descriptor. Waits up to
// waitMs for another writer. Gives that descriptor, or -1 with errorText.
int LockImage(const RomFile& rom, int waitMs, QString& errorText);
void UnlockImage(int lock);
// Whether the image is the file its name now leads to, and not one replaced since.
bool IsSameFileAs(const RomFile& rom, const QString& fileName);
