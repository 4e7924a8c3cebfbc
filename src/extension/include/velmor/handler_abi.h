#ifndef VELMOR_HANDLER_ABI_H
#define VELMOR_HANDLER_ABI_H

/*
 * The interface between Velmor and a library of handlers. It is plain C, so program and library may come from different
 * compilers and link different C++ libraries. <velmor/handler.h> is a C++ interface on top of it, for handlers.
 *
 * A library exports VelmorHandlerEntry under the name VELMOR_HANDLER_ENTRY. On Windows, where handlers are COM classes,
 * the same function is called by the code that makes the classes (ComHandler.cpp), within the library.
 *
 * Texts are UTF-16. A text or value that is passed to a function belongs to the caller and lasts for the call. A result
 * belongs to the side that made it: the receiver copies it and gives it to that side's `release`. All calls come from
 * the thread that evaluates; several threads may evaluate at the same time. No exception leaves any function.
 */

#include <stddef.h>
#include <stdint.h>
#ifndef __cplusplus
#include <uchar.h>
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Grows with each change of this file that a library built with an older one would notice. */
#define VELMOR_HANDLER_ABI 1

#define VELMOR_HANDLER_ENTRY "velmorHandlerLibrary"

typedef struct VelmorText {
    const char16_t* units; /* without a closing zero; may be null if length is 0 */
    size_t length;         /* in code units */
} VelmorText;

typedef struct VelmorObject VelmorObject;

/* The types of values. Every automation number arrives as VELMOR_NUMBER; values without a type here (null, error codes,
   arrays) arrive as VELMOR_NOTHING. */
enum {
    VELMOR_NOTHING = 0,
    VELMOR_TEXT = 1,   /* `text` */
    VELMOR_NUMBER = 2, /* `number` */
    VELMOR_DATE = 3,   /* `number`: days since 30 December 1899; the fraction is the time of the day, also of negative
                          dates */
    VELMOR_TRUTH = 4,  /* `number`: 0 or 1 */
    VELMOR_OBJECT = 5  /* `object`, which the program made; never null */
};

typedef struct VelmorValue {
    int32_t type;
    double number;
    VelmorText text;
    VelmorObject* object;
} VelmorValue;

enum { VELMOR_METHOD = 0, VELMOR_GET = 1, VELMOR_LET = 2, VELMOR_SET = 3 };

/* An automation object of the program, such as the tag; docs/component.md describes their members. Both functions give
   0 and a result, or the number of an automation error (13: type mismatch, 438: no such member, ...) and its
   description as a text. The result must be released in either case. */
typedef struct VelmorObjectFunctions {
    /* Calls a member by its name, without regard to case. A let or set has the new value as its last argument. */
    int32_t (*invoke)(VelmorObject* object, int32_t kind, VelmorText member, const VelmorValue* arguments, size_t count,
                      VelmorValue* result);
    /* The value as VELMOR_TEXT, VELMOR_NUMBER, VELMOR_DATE or VELMOR_TRUTH, by the rules of automation. */
    int32_t (*convert)(VelmorObject* object, const VelmorValue* value, int32_t type, VelmorValue* result);
    /* Releases what a result refers to; the object of a value with it. */
    void (*release)(VelmorValue* result);
} VelmorObjectFunctions;

struct VelmorObject {
    const VelmorObjectFunctions* functions;
};

/* A class of handlers. Its objects keep nothing, so there are none: each call is complete. */
typedef struct VelmorHandlerClass {
    VelmorText name;        /* "Maker.Class", as the registry has it */
    VelmorText identifier;  /* of the COM class: "{01234567-89AB-CDEF-0123-456789ABCDEF}" */
    VelmorText description; /* of the COM class, for people */
    VelmorText handler;     /* in tags; the COM class registers itself for it, unless the text is empty */
    /* Calls a member of the handler: Interface, GetTagValue, CommandList, ParameterList, SyntaxString,
       CommandDescription, ParameterValueList. The outcome is that of VelmorObjectFunctions::invoke. */
    int32_t (*invoke)(VelmorText member, const VelmorValue* arguments, size_t count, VelmorValue* result);
} VelmorHandlerClass;

typedef struct VelmorHandlerLibrary {
    int32_t version; /* VELMOR_HANDLER_ABI as the library was built */
    const VelmorHandlerClass* classes;
    size_t classCount;
    void (*release)(VelmorValue* result);
} VelmorHandlerLibrary;

/* `version` is the program's VELMOR_HANDLER_ABI. Null: the library does not serve it. What is returned lasts as long as
   the library is loaded. */
typedef const VelmorHandlerLibrary* VelmorHandlerEntry(int32_t version);

#ifdef __cplusplus
}
#endif

#endif
