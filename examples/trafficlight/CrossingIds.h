#pragma once

/// The ids of all tasks, under which they are registered. A machine inside a machine is a task like others.
enum TaskId
{
    TASK_CROSSING,
    TASK_MODE_SWITCH,
    TASK_DAY,
    TASK_NIGHT,
    PHASE_RED,
    PHASE_RED_AMBER,
    PHASE_GREEN,
    PHASE_AMBER,
    PHASE_DARK
};

/// How the crossing works. The mode switch answers with the mode in which it goes on.
enum Mode
{
    MODE_DAY,
    MODE_NIGHT,
    MODE_OFF
};

/// What a phase answers at its end, besides TR_PROCEED.
enum PhaseResult
{
    RESULT_MODE_CHANGE ///< another mode is wanted
};

// Variables of the whole crossing, which outlive the tasks that set them.
constexpr char const * VAR_MODE = "Mode";             // that of the present
constexpr char const * VAR_WANTED_MODE = "Wanted";    // that of the last request
constexpr char const * VAR_PEDESTRIAN = "Pedestrian"; // 1 if one waits, else 0
