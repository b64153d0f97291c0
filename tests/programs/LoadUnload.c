/* Loads and unloads the library, as a program that is not linked with it does, and prints what it finds. */

#include <dlfcn.h>
#include <stdio.h>

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
    }
    return 0;
}
