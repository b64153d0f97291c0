// The child of the rows that read a child's output: writes COUNT lines of LENGTH bytes, the line end included, to
// the standard output. With "mixed" instead of the length, it writes COUNT bytes in lines of 1 to 100,000 bytes, to
// both streams in turn.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

static void WriteEqual(long iCount, std::size_t iLength)
{
    std::string sLine(iLength, 'x');
    sLine.back() = '\n';
    for (long i = 0; i < iCount; ++i)
        std::fwrite(sLine.data(), 1, sLine.size(), stdout);
}

static void WriteMixed(long iBytes)
{
    std::string const sLine(100'000, 'x');
    for (std::uint64_t iSeed = 1; iBytes > 0;)
    {
        iSeed = iSeed * 6364136223846793005u + 1442695040888963407u;
        std::size_t const iLength = 1 + (iSeed >> 33) % sLine.size();
        std::FILE * const pStream = iSeed >> 63 ? stderr : stdout;
        std::fwrite(sLine.data(), 1, iLength, pStream);
        std::fputc('\n', pStream);
        iBytes -= static_cast<long>(iLength) + 1;
    }
}

int main(int iCount, char ** pArguments)
{
    if (iCount < 3)
        return 2;

    static char aBuffers[2][1 << 16];
    std::setvbuf(stdout, aBuffers[0], _IOFBF, sizeof aBuffers[0]);
    std::setvbuf(stderr, aBuffers[1], _IOFBF, sizeof aBuffers[1]);
    if (std::string(pArguments[2]) == "mixed")
        WriteMixed(std::atol(pArguments[1]));
    else
        WriteEqual(std::atol(pArguments[1]), static_cast<std::size_t>(std::atol(pArguments[2])));
    return std::fflush(stdout) == 0 && std::fflush(stderr) == 0 ? 0 : 1;
}
