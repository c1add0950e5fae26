#pragma once

namespace utils_statics {

// The numbered folders of zelPath that the exam environment asks for.
enum Store : int
{
    applicationStore = 0,
    fallbackFactoryStore = 1,
    imagesStore = 2,
    layoutStore = 9,
    fallbackLayoutStore = 21,
    savedProtocolsStore = 22,
    patientDatabaseStore = 34,
    currentFactoryStore = 37, // of the protocol in use
    baseSuiteStore = 38,
    secondBaseStore = 39,
};

} // namespace utils_statics
