// SPDX-License-Identifier: Apache-2.0
// Words by which a declaration tells clang which lock guards what, so that a member read without
// its lock, or a lock taken in the wrong order, does not compile. For other compilers they say
// nothing. See https://github.com/llvm/llvm-project, clang/docs/ThreadSafetyAnalysis.rst.
#pragma once

#if defined(__clang__)
#define ZU_ANNOTATION(x) __attribute__((x))
#else
#define ZU_ANNOTATION(x)
#endif

// Of a class: it can be held, or holds something while it lives.
#define ZU_CAPABILITY(name) ZU_ANNOTATION(capability(name))
#define ZU_SCOPED_CAPABILITY ZU_ANNOTATION(scoped_lockable)

// Of a member: the lock that guards it, or what it points to; the lock that is taken after it.
#define ZU_GUARDED_BY(lock) ZU_ANNOTATION(guarded_by(lock))
#define ZU_PT_GUARDED_BY(lock) ZU_ANNOTATION(pt_guarded_by(lock))
#define ZU_ACQUIRED_BEFORE(...) ZU_ANNOTATION(acquired_before(__VA_ARGS__))

// Of a function: what its caller holds; what it takes and gives back.
#define ZU_REQUIRES(...) ZU_ANNOTATION(requires_capability(__VA_ARGS__))
#define ZU_ACQUIRE(...) ZU_ANNOTATION(acquire_capability(__VA_ARGS__))
#define ZU_ACQUIRE_SHARED(...) ZU_ANNOTATION(acquire_shared_capability(__VA_ARGS__))
#define ZU_RELEASE(...) ZU_ANNOTATION(release_capability(__VA_ARGS__))
#define ZU_RELEASE_SHARED(...) ZU_ANNOTATION(release_shared_capability(__VA_ARGS__))

// Of a function that the compiler can't follow, with a comment that says why.
#define ZU_NO_THREAD_SAFETY_ANALYSIS ZU_ANNOTATION(no_thread_safety_analysis)
