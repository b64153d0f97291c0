#pragma once

#include <vector>
