// Made by tools/tables/make_error_texts.py from data/winapi/error-texts.tsv: 141 texts. Not edited by hand.
// clang-format off
#include "Errors/ErrorTexts.h"

namespace winapi
{
const ErrorText errorTexts[] = {
    {0, "The operation completed successfully."}, // ERROR_SUCCESS
    {1, "Incorrect function."}, // ERROR_INVALID_FUNCTION
    {2, "The system cannot find the file specified."}, // ERROR_FILE_NOT_FOUND
    {3, "The system cannot find the path specified."}, // ERROR_PATH_NOT_FOUND
    {4, "The system cannot open the file."}, // ERROR_TOO_MANY_OPEN_FILES
    {5, "Access is denied."}, // ERROR_ACCESS_DENIED
    {6, "The handle is invalid."}, // ERROR_INVALID_HANDLE
    {8, "Not enough storage is available to process this command."}, // ERROR_NOT_ENOUGH_MEMORY
    {12, "The access code is invalid."}, // ERROR_INVALID_ACCESS
    {13, "The data is invalid."}, // ERROR_INVALID_DATA
    {14, "Not enough storage is available to complete this operation."}, // ERROR_OUTOFMEMORY
    {15, "The system cannot find the drive specified."}, // ERROR_INVALID_DRIVE
    {16, "The directory cannot be removed."}, // ERROR_CURRENT_DIRECTORY
    {17, "The system cannot move the file to a different disk drive."}, // ERROR_NOT_SAME_DEVICE
    {18, "There are no more files."}, // ERROR_NO_MORE_FILES
    {19, "The media is write protected."}, // ERROR_WRITE_PROTECT
    {21, "The device is not ready."}, // ERROR_NOT_READY
    {23, "Data error (cyclic redundancy check)."}, // ERROR_CRC
    {29, "The system cannot write to the specified device."}, // ERROR_WRITE_FAULT
    {30, "The system cannot read from the specified device."}, // ERROR_READ_FAULT
    {31, "A device attached to the system is not functioning."}, // ERROR_GEN_FAILURE
    {32, "The process cannot access the file because it is being used by another process."}, // ERROR_SHARING_VIOLATION
    {33, "The process cannot access the file because another process has locked a portion of the file."}, // ERROR_LOCK_VIOLATION
    {36, "Too many files opened for sharing."}, // ERROR_SHARING_BUFFER_EXCEEDED
    {38, "Reached the end of the file."}, // ERROR_HANDLE_EOF
    {39, "The disk is full."}, // ERROR_HANDLE_DISK_FULL
    {50, "The request is not supported."}, // ERROR_NOT_SUPPORTED
    {53, "The network path was not found."}, // ERROR_BAD_NETPATH
    {67, "The network name cannot be found."}, // ERROR_BAD_NET_NAME
    {80, "The file exists."}, // ERROR_FILE_EXISTS
    {82, "The directory or file cannot be created."}, // ERROR_CANNOT_MAKE
    {87, "The parameter is incorrect."}, // ERROR_INVALID_PARAMETER
    {108, "The disk is in use or locked by another process."}, // ERROR_DRIVE_LOCKED
    {109, "The pipe has been ended."}, // ERROR_BROKEN_PIPE
    {110, "The system cannot open the device or file specified."}, // ERROR_OPEN_FAILED
    {111, "The file name is too long."}, // ERROR_BUFFER_OVERFLOW
    {112, "There is not enough space on the disk."}, // ERROR_DISK_FULL
    {113, "No more internal file identifiers available."}, // ERROR_NO_MORE_SEARCH_HANDLES
    {120, "This function is not supported on this system."}, // ERROR_CALL_NOT_IMPLEMENTED
    {122, "The data area passed to a system call is too small."}, // ERROR_INSUFFICIENT_BUFFER
    {123, "The filename, directory name, or volume label syntax is incorrect."}, // ERROR_INVALID_NAME
    {124, "The system call level is not correct."}, // ERROR_INVALID_LEVEL
    {126, "The specified module could not be found."}, // ERROR_MOD_NOT_FOUND
    {127, "The specified procedure could not be found."}, // ERROR_PROC_NOT_FOUND
    {128, "There are no child processes to wait for."}, // ERROR_WAIT_NO_CHILDREN
    {131, "An attempt was made to move the file pointer before the beginning of the file."}, // ERROR_NEGATIVE_SEEK
    {132, "The file pointer cannot be set on the specified device or file."}, // ERROR_SEEK_ON_DEVICE
    {145, "The directory is not empty."}, // ERROR_DIR_NOT_EMPTY
    {157, "The segment is already discarded and cannot be locked."}, // ERROR_DISCARDED
    {158, "The segment is already unlocked."}, // ERROR_NOT_LOCKED
    {161, "The specified path is invalid."}, // ERROR_BAD_PATHNAME
    {167, "Unable to lock a region of a file."}, // ERROR_LOCK_FAILED
    {170, "The requested resource is in use."}, // ERROR_BUSY
    {183, "Cannot create a file when that file already exists."}, // ERROR_ALREADY_EXISTS
    {203, "The system could not find the environment option that was entered."}, // ERROR_ENVVAR_NOT_FOUND
    {206, "The filename or extension is too long."}, // ERROR_FILENAME_EXCED_RANGE
    {212, "The segment is locked and cannot be reallocated."}, // ERROR_LOCKED
    {234, "More data is available."}, // ERROR_MORE_DATA
    {258, "The wait operation timed out."}, // WAIT_TIMEOUT
    {259, "No more data is available."}, // ERROR_NO_MORE_ITEMS
    {267, "The directory name is invalid."}, // ERROR_DIRECTORY
    {487, "Attempt to access invalid address."}, // ERROR_INVALID_ADDRESS
    {995, "The I/O operation has been aborted because of either a thread exit or an application request."}, // ERROR_OPERATION_ABORTED
    {996, "Overlapped I/O event is not in a signaled state."}, // ERROR_IO_INCOMPLETE
    {997, "Overlapped I/O operation is in progress."}, // ERROR_IO_PENDING
    {998, "Invalid access to memory location."}, // ERROR_NOACCESS
    {999, "Error performing inpage operation."}, // ERROR_SWAPERROR
    {1001, "Recursion too deep; the stack overflowed."}, // ERROR_STACK_OVERFLOW
    {1003, "Cannot complete this function."}, // ERROR_CAN_NOT_COMPLETE
    {1004, "Invalid flags."}, // ERROR_INVALID_FLAGS
    {1005, "The volume does not contain a recognized file system."}, // ERROR_UNRECOGNIZED_VOLUME
    {1006, "The volume for a file has been externally altered so that the opened file is no longer valid."}, // ERROR_FILE_INVALID
    {1007, "The requested operation cannot be performed in full-screen mode."}, // ERROR_FULLSCREEN_MODE
    {1008, "An attempt was made to reference a token that does not exist."}, // ERROR_NO_TOKEN
    {1009, "The configuration registry database is corrupt."}, // ERROR_BADDB
    {1010, "The configuration registry key is invalid."}, // ERROR_BADKEY
    {1011, "The configuration registry key could not be opened."}, // ERROR_CANTOPEN
    {1012, "The configuration registry key could not be read."}, // ERROR_CANTREAD
    {1013, "The configuration registry key could not be written."}, // ERROR_CANTWRITE
    {1014, "One of the files in the registry database had to be recovered by use of a log or alternate copy. The recovery was successful."}, // ERROR_REGISTRY_RECOVERED
    {1015, "The registry is corrupted. The structure of one of the files containing registry data is corrupted, or the system's memory image of the file is corrupted, or the file could not be recovered because the alternate copy or log was absent or corrupted."}, // ERROR_REGISTRY_CORRUPT
    {1016, "An I/O operation initiated by the registry failed unrecoverably. The registry could not read in, or write out, or flush, one of the files that contain the system's image of the registry."}, // ERROR_REGISTRY_IO_FAILED
    {1017, "The system has attempted to load or restore a file into the registry, but the specified file is not in a registry file format."}, // ERROR_NOT_REGISTRY_FILE
    {1018, "Illegal operation attempted on a registry key that has been marked for deletion."}, // ERROR_KEY_DELETED
    {1019, "System could not allocate the required space in a registry log."}, // ERROR_NO_LOG_SPACE
    {1020, "Cannot create a symbolic link in a registry key that already has subkeys or values."}, // ERROR_KEY_HAS_CHILDREN
    {1021, "Cannot create a stable subkey under a volatile parent key."}, // ERROR_CHILD_MUST_BE_VOLATILE
    {1110, "The media in the drive may have changed."}, // ERROR_MEDIA_CHANGED
    {1112, "No media in drive."}, // ERROR_NO_MEDIA_IN_DRIVE
    {1113, "No mapping for the Unicode character exists in the target multi-byte code page."}, // ERROR_NO_UNICODE_TRANSLATION
    {1114, "A dynamic link library (DLL) initialization routine failed."}, // ERROR_DLL_INIT_FAILED
    {1117, "The request could not be performed because of an I/O device error."}, // ERROR_IO_DEVICE
    {1132, "The base address or the file offset specified does not have the proper alignment."}, // ERROR_MAPPED_ALIGNMENT
    {1150, "The specified program requires a newer version of Windows."}, // ERROR_OLD_WIN_VERSION
    {1154, "One of the library files needed to run this application is damaged."}, // ERROR_INVALID_DLL
    {1155, "No application is associated with the specified file for this operation."}, // ERROR_NO_ASSOCIATION
    {1157, "One of the library files needed to run this application cannot be found."}, // ERROR_DLL_NOT_FOUND
    {1158, "The current process has used all of its system allowance of handles for Window Manager objects."}, // ERROR_NO_MORE_USER_HANDLES
    {1167, "The device is not connected."}, // ERROR_DEVICE_NOT_CONNECTED
    {1168, "Element not found."}, // ERROR_NOT_FOUND
    {1175, "Unable to remove the file to be replaced."}, // ERROR_UNABLE_TO_REMOVE_REPLACED
    {1176, "Unable to move the replacement file to the file to be replaced. The file to be replaced has retained its original name."}, // ERROR_UNABLE_TO_MOVE_REPLACEMENT
    {1177, "Unable to move the replacement file to the file to be replaced. The file to be replaced has been renamed using the backup name."}, // ERROR_UNABLE_TO_MOVE_REPLACEMENT_2
    {1178, "The volume change journal is being deleted."}, // ERROR_JOURNAL_DELETE_IN_PROGRESS
    {1223, "The operation was canceled by the user."}, // ERROR_CANCELLED
    {1224, "The requested operation cannot be performed on a file with a user-mapped section open."}, // ERROR_USER_MAPPED_FILE
    {1231, "The network location cannot be reached. For information about network troubleshooting, see Windows Help."}, // ERROR_NETWORK_UNREACHABLE
    {1300, "Not all privileges or groups referenced are assigned to the caller."}, // ERROR_NOT_ALL_ASSIGNED
    {1314, "A required privilege is not held by the client."}, // ERROR_PRIVILEGE_NOT_HELD
    {1326, "The user name or password is incorrect."}, // ERROR_LOGON_FAILURE
    {1400, "Invalid window handle."}, // ERROR_INVALID_WINDOW_HANDLE
    {1401, "Invalid menu handle."}, // ERROR_INVALID_MENU_HANDLE
    {1402, "Invalid cursor handle."}, // ERROR_INVALID_CURSOR_HANDLE
    {1403, "Invalid accelerator table handle."}, // ERROR_INVALID_ACCEL_HANDLE
    {1404, "Invalid hook handle."}, // ERROR_INVALID_HOOK_HANDLE
    {1405, "Invalid handle to a multiple-window position structure."}, // ERROR_INVALID_DWP_HANDLE
    {1406, "Cannot create a top-level child window."}, // ERROR_TLW_WITH_WSCHILD
    {1407, "Cannot find window class."}, // ERROR_CANNOT_FIND_WND_CLASS
    {1408, "Invalid window; it belongs to other thread."}, // ERROR_WINDOW_OF_OTHER_THREAD
    {1409, "Hot key is already registered."}, // ERROR_HOTKEY_ALREADY_REGISTERED
    {1410, "Class already exists."}, // ERROR_CLASS_ALREADY_EXISTS
    {1411, "Class does not exist."}, // ERROR_CLASS_DOES_NOT_EXIST
    {1412, "Class still has open windows."}, // ERROR_CLASS_HAS_WINDOWS
    {1413, "Invalid index."}, // ERROR_INVALID_INDEX
    {1414, "Invalid icon handle."}, // ERROR_INVALID_ICON_HANDLE
    {1418, "Thread does not have a clipboard open."}, // ERROR_CLIPBOARD_NOT_OPEN
    {1425, "Invalid device context (DC) handle."}, // ERROR_DC_NOT_FOUND
    {1438, "Invalid message box style."}, // ERROR_INVALID_MSGBOX_STYLE
    {1444, "Invalid thread identifier."}, // ERROR_INVALID_THREAD_ID
    {1450, "Insufficient system resources exist to complete the requested service."}, // ERROR_NO_SYSTEM_RESOURCES
    {1455, "The paging file is too small for this operation to complete."}, // ERROR_COMMITMENT_LIMIT
    {1460, "This operation returned because the timeout period expired."}, // ERROR_TIMEOUT
    {1784, "The supplied user buffer is not valid for the requested operation."}, // ERROR_INVALID_USER_BUFFER
    {1785, "The disk media is not recognized. It may not be formatted."}, // ERROR_UNRECOGNIZED_MEDIA
    {1812, "The specified image file did not contain a resource section."}, // ERROR_RESOURCE_DATA_NOT_FOUND
    {1813, "The specified resource type cannot be found in the image file."}, // ERROR_RESOURCE_TYPE_NOT_FOUND
    {1814, "The specified resource name cannot be found in the image file."}, // ERROR_RESOURCE_NAME_NOT_FOUND
    {1815, "The specified resource language ID cannot be found in the image file."}, // ERROR_RESOURCE_LANG_NOT_FOUND
    {1816, "Not enough quota is available to process this command."}, // ERROR_NOT_ENOUGH_QUOTA
    {1921, "The name of the file cannot be resolved by the system."}, // ERROR_CANT_RESOLVE_FILENAME
    {2250, "This network connection does not exist."}, // ERROR_NOT_CONNECTED
};
const unsigned errorTextCount = sizeof errorTexts / sizeof errorTexts[0];
} // namespace winapi
