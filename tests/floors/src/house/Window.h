#pragma once

#include <house/Stairs.h>
