/* Loads and unloads the library, as a program that is not linked with it does, and prints what it finds. Then it
   forks, which nothing of the library takes part in any more, and ends with the library loaded. */

#define _POSIX_C_SOURCE 200809L

#include <dlfcn.h>
#include <stdio.h>
#include <sys/wait.h>
#include <unistd.h>

int main(void)
{
    for (int i = 0; i < 3; ++i)
    {
        void * const pLibrary = dlopen(TESSEL_LIBRARY_FILE, RTLD_NOW);
        if (!pLibrary)
        {
            printf("cannot load: %s\n", dlerror());
            return 1;
        }

        int (*fInit)(void);
        *(void **)&fInit = dlsym(pLibrary, "InitDllTessel");
        printf("%d ", fInit ? fInit() : -1);
        dlclose(pLibrary);
        printf("%s\n", dlopen(TESSEL_LIBRARY_FILE, RTLD_NOW | RTLD_NOLOAD) ? "stays" : "gone");
        fflush(stdout);
    }

    pid_t const iChild = fork();
    if (iChild == 0)
        _exit(0);
    int iStatus = -1;
    waitpid(iChild, &iStatus, 0);
    printf("%d %s\n", iStatus, dlopen(TESSEL_LIBRARY_FILE, RTLD_NOW) ? "loaded" : dlerror());
    return 0;
}
