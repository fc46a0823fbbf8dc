# The service, its interface library and its client in an Android tree of API 24 or 25. Newer trees read
# Android.bp, which has the same modules and says why the flags are as they are.
ifneq ($(filter 24 25,$(PLATFORM_SDK_VERSION)),)

LOCAL_PATH := $(call my-dir)

# $(call zyl-module,NAME,SOURCES): begins a module with what all have in common.
define zyl-module
$(eval include $(CLEAR_VARS))
$(eval LOCAL_MODULE := $(1))
$(eval LOCAL_SRC_FILES := $(2))
$(eval LOCAL_MULTILIB := 32)
$(eval LOCAL_CLANG := true)
$(eval LOCAL_C_INCLUDES := $(LOCAL_PATH))
$(eval LOCAL_CFLAGS := -Wall -Wextra -Wthread-safety -Wno-error)
$(eval LOCAL_CPPFLAGS := -std=gnu++14 -fno-exceptions -fno-rtti)
$(eval LOCAL_SHARED_LIBRARIES := libbinder liblog libutils)
endef

$(call zyl-module,libzyl_kwo_service_c, \
    interface/Bp_zyl_kwo_service.cpp \
    interface/Izyl_kwo_service.cpp)
LOCAL_EXPORT_C_INCLUDE_DIRS := $(LOCAL_PATH)
include $(BUILD_SHARED_LIBRARY)

$(call zyl-module,libzyl_driver, \
    driver/descriptor.cpp \
    driver/parameter_table.cpp \
    driver/pipeline.cpp \
    driver/zyl_driver.cpp \
    driver/zyl_driver_files.cpp \
    driver/zyl_driver_queries.cpp)
LOCAL_SHARED_LIBRARIES += libcutils libmedia libzyl-kwo-zylcs-conv
include $(BUILD_STATIC_LIBRARY)

$(call zyl-module,libzyl_settings, \
    settings/fair_lock.cpp \
    settings/generations.cpp \
    settings/maldor_records.cpp \
    settings/replace_file.cpp \
    settings/settings_holder.cpp \
    settings/settings_struct.cpp \
    settings/settings_struct_maldor.cpp \
    settings/settings_struct_torvane.cpp)
include $(BUILD_STATIC_LIBRARY)

$(call zyl-module,libzyl_kwo_service_core, \
    operations/apply.cpp \
    operations/enable_and_stereo.cpp \
    operations/equaliser.cpp \
    operations/listening_test.cpp \
    operations/routes_and_levels.cpp \
    operations/shared_memory.cpp \
    operations/tuning.cpp \
    operations/version.cpp \
    operations/zylcs_tuning.cpp \
    service/Bn_zyl_kwo_service.cpp \
    service/Bn_zylcs_transactions.cpp \
    service/dump.cpp \
    service/service_lock.cpp \
    service/zyl_kwo_service.cpp)
LOCAL_SHARED_LIBRARIES += libzyl_kwo_service_c
include $(BUILD_STATIC_LIBRARY)

$(call zyl-module,zyl_kwo_service,service/main.cpp)
LOCAL_INIT_RC := deploy/zyl_kwo_service.rc
LOCAL_STATIC_LIBRARIES := libzyl_kwo_service_core libzyl_settings libzyl_driver
LOCAL_SHARED_LIBRARIES += libcutils libmedia libzyl-kwo-zylcs-conv libzyl_kwo_service_c
include $(BUILD_EXECUTABLE)

zyl-sources = $(patsubst $(LOCAL_PATH)/%,%,$(wildcard $(LOCAL_PATH)/$(1)/*.cpp))

$(call zyl-module,libkwo_client,$(call zyl-sources,client/library))
LOCAL_SHARED_LIBRARIES += libcutils libzyl_kwo_service_c
include $(BUILD_STATIC_LIBRARY)

$(call zyl-module,kwoctl,$(call zyl-sources,client))
LOCAL_MODULE_CLASS := EXECUTABLES
LOCAL_STATIC_LIBRARIES := libkwo_client
LOCAL_SHARED_LIBRARIES += libcutils libzyl-kwo-zylcs-conv libzyl_kwo_service_c
zyl_generated := $(call local-generated-sources-dir)
$(zyl_generated)/report_page.inc: $(LOCAL_PATH)/client/embed $(LOCAL_PATH)/client/report_page.html
	mkdir -p $(dir $@)
	sh $^ >$@
LOCAL_C_INCLUDES += $(zyl_generated)
LOCAL_ADDITIONAL_DEPENDENCIES := $(zyl_generated)/report_page.inc
include $(BUILD_EXECUTABLE)

# The maker's conversion library comes as a binary.
include $(CLEAR_VARS)
LOCAL_MODULE := libzyl-kwo-zylcs-conv
LOCAL_MODULE_CLASS := SHARED_LIBRARIES
LOCAL_MODULE_SUFFIX := .so
LOCAL_MULTILIB := 32
LOCAL_SRC_FILES := prebuilt/libzyl-kwo-zylcs-conv.so
include $(BUILD_PREBUILT)

endif
