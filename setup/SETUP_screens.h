// The portable's setup dialogs. Each edits items of setup_record and changes them only with OK; result 1
// after OK, 0 after Cancel.
#pragma once

#include <windows.h>

// Symbologies
extern const DLGPROC CODE39PROC, UPCPROC, EANPROC, SUPPROC, I2OF5PROC, CODABARPROC, CODE128PROC, CODE93PROC,
    MSIPLESSEYPROC, CODE11PROC;

// What is sent with a scan, the scanner, and the portable itself
extern const DLGPROC TERMCHARPROC, PRE_POST_AMBLEPROC, BAREDITPROC, BARBEEPPROC, LASERCCDPROC, BAROTHERPROC,
    TRANSMITPROC, OTHERPROC, KEYBOARDWEDGEPROC, NONPORTPROC;
