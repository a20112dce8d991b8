#include "app/ui/form1.h"
void StyleApplication(QApplication&) {}
