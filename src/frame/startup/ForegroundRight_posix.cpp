#include "frame/startup/ForegroundRight.h"

void GiveForegroundRight() {}
