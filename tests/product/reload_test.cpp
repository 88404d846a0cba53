// SPDX-License-Identifier: Apache-2.0
//
// The real shared object in a host's process: loaded, loaded anew while a module lives, and shared by two
// modules.
#include <gtest/gtest.h>

#include <dlfcn.h>
#include <link.h>

#include <filesystem>
#include <string>

#include "ovk_ethernet.h"
#include "sim.h"

namespace {

constexpr u32 type = OVK_ETHERNET_EXCEPTION_TYPE_UNKNOWN_DEST_MAC;
constexpr u32 type_code = 72;

// The path of the loaded object that an address lies in; empty if it lies in none.
template <class Function>
std::string object_of(Function *function)
{
    Dl_info info = {};
    return dladdr(reinterpret_cast<void *>(function), &info) != 0 ? info.dli_fname : "";
}

bool is_loaded(const std::string &path)
{
    std::string wanted = path; // becomes empty when found
    dl_iterate_phdr(
        [](dl_phdr_info *info, size_t, void *data) {
            std::string &name = *static_cast<std::string *>(data);
            if (name == info->dlpi_name)
                name.clear();
            return 0;
        },
        &wanted);
    return wanted.empty();
}

// The library as a host has it after loading the file.
class Library {
  public:
    Library(std::string path, int scope)
        : path_(std::move(path)), handle_(dlopen(path_.c_str(), RTLD_NOW | scope))
    {
        if (handle_ == nullptr)
            throw std::runtime_error(dlerror());
        find(init, "ovk_ethernet_init");
        find(configure, "ovk_ethernet_exception_configure");
        find(update, "ovk_ethernet_service_function_update");
        find(shutdown, "ovk_ethernet_shutdown");
    }
    ~Library() { dlclose(handle_); }
    Library(const Library &) = delete;
    Library &operator=(const Library &) = delete;

    const std::string &path() const { return path_; }

    decltype(&ovk_ethernet_init) init;
    decltype(&ovk_ethernet_exception_configure) configure;
    decltype(&ovk_ethernet_service_function_update) update;
    decltype(&ovk_ethernet_shutdown) shutdown;

  private:
    template <class Function>
    void find(Function *&function, const char *name)
    {
        function = reinterpret_cast<Function *>(dlsym(handle_, name));
        if (function == nullptr)
            throw std::runtime_error(dlerror());
    }

    std::string path_;
    void *handle_;
};

ovk_ethernet_exception_action to_cpu(u32 cpu_param)
{
    ovk_ethernet_exception_action action = {.type = OVK_ETHERNET_EXCEPTION_ACTION_TYPE_SEND_TO_CPU};
    action.send_to_cpu.cpu_param = cpu_param;
    return action;
}

constexpr ovk_ethernet_exception_action drop = {.type = OVK_ETHERNET_EXCEPTION_ACTION_TYPE_DROP};

bool has_rule(const sim::Host &host, u32 domain)
{
    const auto rule = sim::rule(host.rte(), "Exception_Handler_lookup", {{domain, 2}, {type_code, 8}});
    return rule && rule->type == KOR_PTN_ACTION_DATA;
}

class SharedObject : public testing::TestWithParam<int> {
  protected:
    SharedObject() { sim::reset(); }
    ~SharedObject() override { EXPECT_EQ(sim::misuse(), std::vector<std::string>{}); }
};

// What a reload is to a host: another copy of the file at another address, then the first one goes.
TEST_P(SharedObject, ModuleLivesOnInFreshlyLoadedCode)
{
    const std::string copy = OVK_SCRATCH "/libovk-ethernet-" + std::to_string(GetParam()) + ".so";
    std::filesystem::copy_file(OVK_LIBRARY, copy, std::filesystem::copy_options::overwrite_existing);
    sim::Host host;
    ovk_module *module = host.module();
    auto old = std::make_unique<Library>(OVK_LIBRARY, GetParam());
    ASSERT_EQ(old->init(module), 0u);
    const ovk_ethernet_exception_action action = to_cpu(1);
    EXPECT_EQ(old->configure(module, 0, type, &action), 0u);
    EXPECT_EQ(old->configure(module, 2, type, &action), 0u);
    const auto old_init = old->init;
    const std::string image = host.image();

    Library fresh(copy, GetParam());
    ASSERT_EQ(object_of(fresh.init), copy);
    old.reset();
    ASSERT_FALSE(is_loaded(OVK_LIBRARY)); // nothing pins it
    ASSERT_EQ(object_of(old_init), "");

    EXPECT_EQ(fresh.update(module), 0u);
    EXPECT_EQ(host.image(), image); // the classifier isn't touched
    const auto record = host.service_record();
    ASSERT_TRUE(record);
    EXPECT_EQ(object_of(record->shutdown), copy);
    EXPECT_EQ(object_of(record->sys_log), copy);
    EXPECT_EQ(object_of(record->error_name), copy);

    EXPECT_EQ(fresh.configure(module, 0, type, &drop), 0u);
    EXPECT_FALSE(has_rule(host, 0));
    EXPECT_TRUE(has_rule(host, 2)); // what the old code learnt
    EXPECT_EQ(record->sys_log(module, 3), 0u);
    EXPECT_EQ(module->log_mask, 3u);
    EXPECT_STREQ(record->error_name(OVK_ETHERNET_E_INVALID_BG_ID), "OVK_ETHERNET_E_INVALID_BG_ID");
    EXPECT_EQ(record->shutdown(module), 0u);
    EXPECT_EQ(fresh.shutdown(module), u32{KOR_E_INVALID_HANDLE});
    EXPECT_EQ(sim::lock_depth(host.lock()), 0u);
}

TEST_P(SharedObject, TwoModulesOfOneProcessDontMeet)
{
    const Library library(OVK_LIBRARY, GetParam());
    sim::Host one;
    sim::Host other;
    ASSERT_EQ(library.init(one.module()), 0u);
    ASSERT_EQ(library.init(other.module()), 0u);
    const std::string other_image = other.image();

    const ovk_ethernet_exception_action action = to_cpu(1);
    EXPECT_EQ(library.configure(one.module(), 3, type, &action), 0u);
    EXPECT_TRUE(has_rule(one, 3));
    EXPECT_EQ(other.image(), other_image);
    EXPECT_EQ(library.shutdown(one.module()), 0u);
    EXPECT_EQ(other.image(), other_image);
    EXPECT_EQ(library.configure(other.module(), 3, type, &action), 0u);
    EXPECT_TRUE(has_rule(other, 3));
    EXPECT_EQ(library.shutdown(other.module()), 0u);
}

// Hosts load modules privately or for all.
INSTANTIATE_TEST_SUITE_P(Loaded, SharedObject, testing::Values(RTLD_LOCAL, RTLD_GLOBAL),
                         [](const auto &scope) {
                             return scope.param == RTLD_LOCAL ? "Privately" : "ForAll";
                         });

} // namespace
