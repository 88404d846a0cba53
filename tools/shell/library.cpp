// SPDX-License-Identifier: Apache-2.0
#include "library.h"

#include "command.h"

#include <dlfcn.h>
#include <filesystem>

namespace shell {

namespace {

template <class Call>
void find(void *handle, const char *name, Call &call)
{
    void *address = dlsym(handle, name);
    if (!address)
        throw Failure(std::string("the library has no ") + name);
    call = reinterpret_cast<Call>(address);
}

} // namespace

void Library::Unload::operator()(void *handle) const
{
    dlclose(handle);
}

Library::Library(const std::string &file) : handle_(dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL))
{
    if (!handle_)
        throw Failure(std::string("the library can't be loaded: ") + dlerror());
#define OVK_SHELL_CALL(name) find(handle_.get(), #name, calls_.name);
    OVK_SHELL_CALLS(OVK_SHELL_CALL)
#undef OVK_SHELL_CALL
    Dl_info info{};
    dladdr(reinterpret_cast<const void *>(calls_.ovk_ethernet_init), &info);
    base_ = info.dli_fbase;
    path_ = info.dli_fname;
}

const void *base_of(const void *address)
{
    Dl_info info{};
    return dladdr(address, &info) ? info.dli_fbase : nullptr;
}

std::string default_library()
{
    namespace fs = std::filesystem;
    std::string name = "libovk-ethernet.so.1";
    std::error_code none;
    const fs::path beside = fs::read_symlink("/proc/self/exe", none).parent_path() / name;
    for (const fs::path &path : {fs::path(OVK_SHELL_BUILT_LIBRARY), beside}) {
        if (fs::exists(path, none))
            return path;
    }
    return name;
}

} // namespace shell
