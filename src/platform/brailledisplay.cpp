#include "platform/brailledisplay.h"

#include "platform/brlapidisplay.h"

namespace lexicove {

std::unique_ptr<BrailleDisplay> MakeSystemBrailleDisplay()
{
#ifdef LEXICOVE_HAVE_BRLAPI
    return std::make_unique<BrlapiDisplay>();
#else
    return std::make_unique<NullBrailleDisplay>();
#endif
}

} // namespace lexicove
