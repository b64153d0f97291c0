#include <house/Window.h>

#include "Pipes.h"
