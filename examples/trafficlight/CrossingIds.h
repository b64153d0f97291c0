#pragma once

/// The ids under which all tasks are registered. A machine inside a machine is a task like others.
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

/// The mode of the crossing. The mode switch returns the mode in which the crossing continues.
enum Mode
{
    MODE_DAY,
    MODE_NIGHT,
    MODE_OFF
};

/// A result of a phase, besides TR_PROCEED.
enum PhaseResult
{
    RESULT_MODE_CHANGE ///< another mode is wanted
};

// Variables of the whole crossing, which outlive the tasks that set them.
constexpr char const * VAR_MODE = "Mode";             // the present one
constexpr char const * VAR_WANTED_MODE = "Wanted";    // the last requested one
constexpr char const * VAR_PEDESTRIAN = "Pedestrian"; // 1 if one waits, else 0
