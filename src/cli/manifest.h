#pragma once
// What rip records in manifest.json, read back for insert and import.
#include <QJsonObject>
#include <QPoint>
#include <QRect>
#include <QString>
#include <optional>
#include <vector>

// One frame's line: where it came from, and the picture (or the part of a sheet) it is.
struct ManifestFrame {
    int table = -1, slot = -1;
    int64_t offset = -1;
    QString file;                 // relative to the manifest's folder; empty when the frame could not be read
    QPoint origin;                // the frame coordinate of the picture's (or the rectangle's) top-left pixel
    std::optional<QRect> rect;    // within a sheet
    std::optional<QString> crc32; // of the picture as rip wrote it
    QJsonObject line;             // as read, so that writing it back keeps what it holds
};

// DIR/manifest.json, a regular file only; nothing, with errorText, when there is none
// that can be read.
std::optional<std::vector<ManifestFrame>> ReadManifest(const QString& dirPath, QString& errorText);
// Writes the lines back whole, each with the offset its frame has now.
bool WriteManifest(const QString& dirPath, const std::vector<ManifestFrame>& frames, QString& errorText);
// How rip records a picture's checksum.
QString ChecksumText(const QByteArray& bytes);

// The origin recorded for a picture in the nearest manifest.json: in the picture's folder
// or up to three folders above it, as rip lays them out. None when that manifest does not
// list the picture or is no regular file.
std::optional<QPoint> RecordedOrigin(const QString& picturePath);
