#include "Help.h"

char const HELP[] =
    R"(jobrunner runs the jobs that an ini file describes, in the order in which they need each other.

  jobrunner [OPTION...] [JOB...]

Without a JOB it runs all, otherwise those and what they need.

  -j N          so many jobs at once at most
  --file FILE   the ini file, jobrunner.ini without it; one whose path begins with '/' or '-' is given as
                --file=/PATH, since a word that begins so reads as an option
  --keep-going  runs what does not need a failed job, as without the option
  --fail-fast   ends the running jobs with the first failed one, and starts no other
  --resume      only jobs that have failed or not run the last time
  --list        shows the names of the jobs
  --dry-run     shows the order: jobs with the same number do not wait for each other
  --dot         shows who waits for whom, for Graphviz
  --mermaid     the same for Mermaid
  --version     shows the version
  --help        shows this text

A word behind -j or --file is the value, any other word the name of a job; a value may also follow behind '=', as in
--file=x.ini. An option is given once.

[Runner]
Parallel=N     jobs at once; as many as there are processors if it is missing
RetryPause=N   milliseconds between two attempts; 500 if it is missing
Grace=N        that of all jobs which have none

[Job/name]     letters, digits, '/' and '_'
Command=...    the program and its arguments; double quotes hold one with blanks together
Shell=yes      a shell runs the command, with '&&', '|', '>' and all that
After=...      names of jobs that must have succeeded, separated by blanks
Timeout=N      milliseconds after which an attempt is ended; 0 for no limit
Grace=N        milliseconds between the request to end, SIGTERM, and the forced end, SIGKILL; 2000 if it is missing
Retries=N      further attempts after a failed one
Expect=N       the exit code of success; 0 if it is missing
Folder=...     where it runs; the current folder if it is missing
Stdin=...      a file, or 'yes' for that of jobrunner; if it is missing, the job reads nothing
Env/NAME=...   a variable of its environment
Mode=Quiet     its output is not taken

[Plugins]
Processor=...  a library, without its ending, that registers the message processor of that name

What the jobs write is in Logfile.txt, and how it went with them beside the ini file, with the ending .state.
The exit code is 0; 1 if a job has failed or the run was interrupted; 2 for wrong arguments or a mistake in the file,
which is told before any job starts. Ctrl-C, SIGTERM, SIGHUP and SIGQUIT end all jobs; a second Ctrl-C at once.
)";
