#pragma once

/// Does an action of a scripted child. Returns how many words it has used: 1, or 2 with its argument; 0 if there is no
/// such action. Only the C++ library is needed.
int DoAction(char const * sAction, char const * sArgument);
