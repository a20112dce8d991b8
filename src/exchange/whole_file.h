#pragma once
// Replacing a file whole: the new bytes are written and flushed in an unnamed file
// beside it, which only then takes the old file's name. A failure leaves the old file
// byte for byte as it was, and no partial or temporary file behind.
#include <QByteArray>
#include <QString>

// errorText names the file, the reason, and what was kept.
bool WriteWholeFile(const QString& fileName, const QByteArray& bytes, QString& errorText);
