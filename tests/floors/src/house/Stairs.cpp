#include <house/Stairs.h>

#include "Pipes.h"

#include <house/Window.h>
