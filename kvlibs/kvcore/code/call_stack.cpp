#include "kvcore/call_stack.h"

#include <cxxabi.h>
#include <dlfcn.h>

#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace KVCORE {

void CALL_STACK::set(const void* const* addresses, std::size_t count) {
    addresses_.assign(addresses, addresses + count);
}

std::string CALL_STACK::get_routine_name(std::size_t index) const {
    if (index >= addresses_.size()) {
        return {};
    }
    const auto address = reinterpret_cast<std::uintptr_t>(addresses_[index]);
    const char* module = "";
    std::uintptr_t offset = address;
    // A return address may lie behind the routine's last instruction, so look one byte before it.
    Dl_info info{};
    if (dladdr(reinterpret_cast<const void*>(address - 1), &info) != 0) {
        if (info.dli_sname) {
            int status = 0;
            const std::unique_ptr<char, decltype(&std::free)> plain(
                abi::__cxa_demangle(info.dli_sname, nullptr, nullptr, &status), &std::free);
            return plain ? plain.get() : info.dli_sname;
        }
        const char* slash = std::strrchr(info.dli_fname, '/');
        module = slash ? slash + 1 : info.dli_fname;
        offset = address - reinterpret_cast<std::uintptr_t>(info.dli_fbase);
    }
    char text[32];
    std::snprintf(text, sizeof text, "+0x%" PRIxPTR, offset);
    return std::string(module) + text;
}

}  // namespace KVCORE
