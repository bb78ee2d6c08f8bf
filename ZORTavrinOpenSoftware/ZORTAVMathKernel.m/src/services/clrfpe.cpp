#include "ZORTAVConfiguration.h"
void clrfpe() {}
