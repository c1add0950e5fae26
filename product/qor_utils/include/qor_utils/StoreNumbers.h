#pragma once

namespace qor_utils {

/// The numbers of zelPath's folders that the libraries use. A host may set others as well.
enum Store : int
{
    applicationStore = 0,
    fallbackFactoryStore = 1,
    imagesStore = 2,
    layoutStore = 9,
    fallbackLayoutStore = 21,
    savedProtocolsStore = 22,
    logStore = 28, ///< log files and crash reports
    patientDatabaseStore = 34,
    currentFactoryStore = 37, ///< factory settings of the protocol in use; set by the host
    baseSuiteStore = 38,
    secondBaseStore = 39,
};

} // namespace qor_utils
