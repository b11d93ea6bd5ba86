// No target of the agent's, but a test of the fuzzing itself: a parser with a mistake that a run has to find. It reads
// one byte more than a number's digits say.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

bool endsWhereItSays(const std::vector<uint8_t>& text)
{
    if (text.size() < 2 || text[0] != 'i' || text[1] < '0' || text[1] > '9')
        return false;
    const std::size_t length = 2U + (text[1] - '0');
    return length <= text.size() && text.data()[length] == 0; // one beyond the text, when it is just as long
}

} // namespace

extern "C" __attribute__((visibility("default"))) int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size)
{
    return endsWhereItSays(std::vector<uint8_t>(data, data + size)) ? -1 : 0;
}
