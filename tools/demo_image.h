#pragma once
#include <QByteArray>

// About 3 MiB: 14 art tables of sprite frames (table 2 with an empty slot, table 3
// ending at a marker) and 7 palettes, at the places the editor reads them.
QByteArray BuildDemoImage();
