#include <plotvane/platform/PixelFormats.h>

#include <algorithm>
#include <array>
#include <cstdlib>

namespace plotvane
{

int ChooseNearestPixelFormat(const std::vector<PIXELFORMATDESCRIPTOR>& candidates,
                             const PIXELFORMATDESCRIPTOR& wanted)
{
    const DWORD required =
        wanted.dwFlags & (PFD_SUPPORT_OPENGL | PFD_DRAW_TO_WINDOW | PFD_DOUBLEBUFFER);
    const bool wantGeneric = (wanted.dwFlags & PFD_GENERIC_FORMAT) != 0;
    auto shortfall = [](BYTE want, BYTE have) { return std::max(int(want) - int(have), 0); };
    auto excess = [](BYTE want, BYTE have) { return std::abs(int(have) - int(want)); };
    // Compared as a whole, most significant first.
    using Key = std::array<int, 10>;
    int best = 0;
    Key bestKey{};
    for (size_t i = 0; i < candidates.size(); ++i)
    {
        const PIXELFORMATDESCRIPTOR& f = candidates[i];
        if ((f.dwFlags & required) != required || f.iPixelType != wanted.iPixelType)
            continue;
        const Key key = {
            ((f.dwFlags & PFD_GENERIC_FORMAT) != 0) != wantGeneric,
            shortfall(wanted.cColorBits, f.cColorBits),
            shortfall(wanted.cDepthBits, f.cDepthBits),
            shortfall(wanted.cStencilBits, f.cStencilBits),
            excess(wanted.cColorBits, f.cColorBits),
            std::abs(f.cRedBits - 8) + std::abs(f.cGreenBits - 8) + std::abs(f.cBlueBits - 8),
            shortfall(wanted.cAlphaBits, f.cAlphaBits),
            excess(wanted.cDepthBits, f.cDepthBits),
            excess(wanted.cStencilBits, f.cStencilBits),
            excess(wanted.cAlphaBits, f.cAlphaBits),
        };
        if (best == 0 || key < bestKey)
        {
            best = int(i) + 1;
            bestKey = key;
        }
    }
    return best;
}

} // namespace plotvane
