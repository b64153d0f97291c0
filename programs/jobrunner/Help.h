#pragma once

/// What --help shows.
extern char const HELP[];
