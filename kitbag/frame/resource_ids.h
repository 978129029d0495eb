/* Identifiers of the library's resources; read by the resource compiler too. */
#pragma once

#define KITBAG_STRING_CONFIG_PROMPT 101
#define KITBAG_STRING_DATA_PROMPT 102
#define KITBAG_STRING_SKINS_PROMPT 103
#define KITBAG_STRING_DOCS_PROMPT 104

/* In each pair of Boolean texts the one for true comes first. */
#define KITBAG_STRING_TRUE 207
#define KITBAG_STRING_FALSE 208
#define KITBAG_STRING_ON 397
#define KITBAG_STRING_OFF 398
#define KITBAG_STRING_YES 399
#define KITBAG_STRING_NO 400

/* A resource of the type REGISTRY. */
#define KITBAG_REGISTRATION_SCRIPT 1
