// The component's one entry point.
#pragma once

#include "host/omnis_abi.h"

extern "C" TABULIX_EXPORT std::int32_t TABULIX_CALL NVObjWndProc(rubrica::host::Word window,
                                                                 std::uint32_t messageNumber,
                                                                 rubrica::host::Word wParam, rubrica::host::Word lParam,
                                                                 rubrica::host::CallBlock* call);
