#pragma once

// Before a function whose loops take several numbers at a time: compiles it for wider registers too, and the loader
// picks what the machine has. The sanitizers are not ready yet when it does.
#if defined(__x86_64__) && defined(__gnu_linux__) && !defined(__SANITIZE_THREAD__) && !defined(__SANITIZE_ADDRESS__)
#define KRV_VECTOR_CLONES __attribute__((target_clones("arch=x86-64-v3", "default")))
#else
#define KRV_VECTOR_CLONES
#endif
