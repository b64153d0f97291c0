#include "cellar/Well.h"
