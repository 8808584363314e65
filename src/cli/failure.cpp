// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/failure.h"

#include "base/errors.h"

#include <exception>
#include <new>

namespace morvane::cli {

int run_guarded(const std::function<int()>& command,
                const std::function<int(const std::string&)>& report) {
    try {
        return command();
    } catch (const RuntimeError& error) {
        return report(error.what());
    } catch (const std::bad_alloc&) {
        return report("7 : Out of memory");
    } catch (const std::exception& error) {
        return report(std::string("Unexpected error: ") + error.what());
    } catch (...) {
        return report("Unexpected error.");
    }
}

} // namespace morvane::cli
