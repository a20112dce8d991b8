#pragma once
// What rip records in manifest.json, read back for insert.
#include <QPoint>
#include <QString>
#include <optional>

// The origin recorded for a picture in the nearest manifest.json that lists it: in the
// picture's folder or a folder above it, as rip lays them out.
std::optional<QPoint> RecordedOrigin(const QString& picturePath);
