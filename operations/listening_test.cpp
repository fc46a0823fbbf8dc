#include "service/zyl_kwo_service.h"

int32_t zyl_kwo_service::setListeningTestResult(float, float, float, float) {
    return kZylKwoNotAvailable;
}

int32_t zyl_kwo_service::getListeningTestResult(float*, float*, float*, float*) {
    return kZylKwoNotAvailable;
}

int32_t zyl_kwo_service::resetListeningTestResult() {
    return kZylKwoNotAvailable;
}
