// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// HIDUsb: the public interface of the device layer. Plain functions with C linkage; the program links to
// these names alone, so another library with the same exports can replace it.
//
// Common to all functions:
// - Any thread may call any function, also from inside a callback. No function throws.
// - A device is named by its HID path, a NUL-terminated 8-bit string as a finder returned it. A null,
//   unknown or stale path fails quietly: false, 0, or the record left as the caller preset it.
// - "bool" results are one byte, 0 for false. There are no error codes.
// - Every call is bounded. A question to a device is asked up to 3 times with 150 ms for each answer
//   (the on-line question twice with 80 ms), so no call takes longer than 0.5 s on a silent device;
//   exceptions are named below. The first question in three seconds opens the device, for which the kernel
//   takes some 60 ms, and more when it has to wake it up; it opens one at a time, so the first questions to
//   several devices wait for each other. Functions that start something return at once.
// - Callbacks come on threads of the library's own, never on a caller's thread, and no lock of the
//   library is held meanwhile. They may block; only later callbacks of the same queue wait.
//
// HIDUSB_BUS in the environment, read at the first call, names the folder of an emulated bus. Without
// it the library uses /dev/hidraw*. HIDUSB_LOG, read at the same time, names the file of a log.
#pragma once

#include "device/hidusb/DeviceRecords.h"

#if defined(__GNUC__)
#define HIDUSB_API __attribute__((visibility("default")))
#else
#define HIDUSB_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

// header: the head of a report. header[1] is the message code; for message 8 header[3] and header[4]
// are the device address, high byte first. payload has payload_length bytes of meaning and is readable
// (zero-filled) for at least 56. Both are the library's and valid during the call only.
typedef void (*ProtocolCallback_t)(const uint8_t *header, int32_t header_length, const uint8_t *payload,
                                   uint32_t payload_length);
// data[0] is 7; data[1] is 1 with a percentage in data[2], or 2 for the end with data[2] 1 on success, 2 when
// the device refused to enter its boot loader (its battery is low) and is as it was, 0 for any other failure.
typedef void (*UpgradeCallback_t)(const uint8_t *data);
typedef void (*UsbChangedCallback_t)(void);

// ---- Discovery and identity ---------------------------------------------------------------------

// Paths of the settings interfaces (interface 1, usage page 0xFF05) of all attached devices with these
// ids. The ids are hexadecimal texts, "0x" in front allowed. *count holds the most paths wanted on
// entry (at most 64 are given) and the number found on return. The array and its texts are the
// library's and stay valid until the same thread calls a finder again. Never null.
HIDUSB_API const char *const *
UsbFinderC_FindHidDevicesByDefaultDeviceId(const char *vendor_id, const char *product_id, int32_t *count);
// The same for interface `interface_number` with the usage page 0xFF00 + `usage` (5: settings,
// 8: screen).
HIDUSB_API const char *const *UsbFinderC_FindHidDevicesByDeviceId(const char *vendor_id,
                                                                  const char *product_id,
                                                                  int32_t interface_number, int32_t usage,
                                                                  int32_t *count);
// The identity that the device reports; all zero when it does not answer. `reserved` is 0. Asked once only,
// because its callers repeat it themselves.
HIDUSB_API DeviceIdentity UsbFinderC_GetDeviceInfo(const char *path, int32_t reserved);
// Ids and release number from the USB descriptor; the device is not asked.
HIDUSB_API void UsbFinderC_GetUsbDeviceAttribute(const char *path, UsbAttribute *attribute);
// True when the mouse itself answers, by cable or radio. False also for a mouse whose last write
// stayed unanswered, when it does not acknowledge that write now either. Takes at most 200 ms, whether
// or not the device opens and answers: while others are being opened, only a device that is open surely
// answers.
HIDUSB_API uint8_t UsbFinderC_GetDeviceOnLine(const char *path);
// The same, with the address of the paired mouse. Without an answer `record` is unchanged.
HIDUSB_API uint8_t UsbFinderC_GetDeviceOnLineWithUsbAddress(const char *path, OnlineAddress *record);
// Firmware of the mouse: bits 8..15 major, bits 0..7 minor; 0 when it does not answer.
HIDUSB_API uint32_t UsbFinderC_GetVersion(const char *path);
// Firmware of the receiver in the same form; false and *version untouched when it does not answer.
HIDUSB_API uint8_t UsbFinderC_GetSlaveVersion(const char *path, uint32_t *version);

// ---- The connection -----------------------------------------------------------------------------

// Opens the one connection, in place of the one before. `path` is given twice. Answers come to
// `callback`, one at a time, in order. The old connection's callback is not called any more once a
// running call of it has returned. Returns at once; before the new connection sends anything, the old
// one ends as with UsbServer_Exit. A path that cannot be opened gives a connection without answers.
HIDUSB_API void UsbServerC_Start(const char *path, const char *same_path, ProtocolCallback_t callback);
// Ends the connection, if there is one. What was ordered and written is still carried out, the driver
// status last, for at most 300 ms; then the rest is dropped. Reads are given up. Returns when that is
// done, at once when nothing waits. Never waits for a running callback.
HIDUSB_API void UsbServer_Exit(void);

// The following act on the open connection, return at once and are carried out in the order of the
// calls; of equal ones that wait and would do the same, one is. Without a connection they do nothing.
// A read that stays unanswered yields no callback.
HIDUSB_API void UsbServer_SetPCDriverStatus(uint8_t in_charge); // 1: the program takes charge, 0: lets go
HIDUSB_API void UsbServer_ReadAllFlashData(void);          // message 8, address 0, 6,912 bytes; at most 5 s
HIDUSB_API void UsbServer_ReadCurrentDPI(void);            // message 8, address 4, 1 byte
HIDUSB_API void UsbServer_ReadReportRate(void);            // message 8, address 0, 1 byte
HIDUSB_API void UsbServer_ReadDPILed(void);                // message 8, address 0x4C, 8 bytes
HIDUSB_API void UsbServer_ReadLedBar(void);                // message 8, address 0xA0, 9 bytes
HIDUSB_API void UsbServer_ReadBatteryLevel(void);          // message 4
HIDUSB_API void UsbServer_ReadVersion(void);               // message 18, no payload
HIDUSB_API void UsbServer_ReadConfig(void);                // message 14, one byte
HIDUSB_API void UsbServer_SetCurrentConfig(uint8_t index); // 0..3
HIDUSB_API void UsbServer_SetClearSetting(void);           // factory reset; message 9 when it is done
HIDUSB_API void UsbServer_SetBatteryOptimizeEnable(uint8_t enable);
// Message 6. The newest start gets one result, 2 or 3; 2 after 65 s when the receiver tells none.
HIDUSB_API void UsbServer_EnterDonglePairOnlyCid(uint8_t cid);
HIDUSB_API void UsbServer_ReadDonglePairStatus(void); // message 6

// The record is the new wanted state of the device. It is copied; a writer in the background sends the
// difference to what the device is known to hold: newer values replace waiting ones, neighbours share a
// report, each report is acknowledged and tried up to 3 times. While it isn't known what the device holds
// a record is not written but answered by a full read (message 8). When a report stays unanswered the
// rest waits, the device shows as off line, and the next on-line question or update tries again. Holds its
// caller for microseconds. A null record is ignored.
HIDUSB_API void ProtocolDataUpdate(const FlashDataMap *record);

// ---- Conversions: pure, no device is asked ------------------------------------------------------

// image: 6,912 bytes. Counts and lengths are cut to what the record holds.
HIDUSB_API void ProtocolDataParser(const uint8_t *image, FlashDataMap *record);
HIDUSB_API void BufferToDPILed(const uint8_t *payload, uint8_t *record_byte_84); // fills bytes 84..87
HIDUSB_API void BufferToLedBar(const uint8_t *payload, uint8_t *record_byte_88); // fills bytes 88..94
HIDUSB_API void GetDeviceBatteryStatus(const uint8_t *payload, BatteryStatus *status);
HIDUSB_API void GetDeviceStatusChanged(const uint8_t *payload, DeviceStatusChange *change);

// ---- The receiver -------------------------------------------------------------------------------

// A Get leaves the record as the caller preset it when the receiver does not answer within 450 ms, that of
// the lamps within 300 ms.
HIDUSB_API void UsbFinderC_Get4KDongleRGBValue(const char *path, DongleRGB *record);
HIDUSB_API void UsbFinderC_Set4KDongleRGB(const char *path, const DongleRGB *record);
HIDUSB_API void UsbFinderC_GetDongleRGBBarMode(const char *path, DongleRgbBar *record);
HIDUSB_API uint8_t UsbFinderC_SetDongleRGBBarMode(const char *path, const DongleRgbBar *record);
HIDUSB_API void UsbFinderC_GetDongleIndicatorLed(const char *path, DongleIndicator *record);
HIDUSB_API uint8_t UsbFinderC_SetDongleIndicatorLed(const char *path, const DongleIndicator *record);
HIDUSB_API void UsbFinderC_GetLongRangeMode(const char *path, uint8_t *mode); // 0 off, other values on
HIDUSB_API void UsbFinderC_SetLongRangeMode(const char *path, uint8_t mode);  // 0 or 1
HIDUSB_API void UsbFinderC_SetDongleIDToMouse(const char *path, const uint8_t *pairing); // DonglePairing

// ---- Raw reports, for a mouse with a screen -----------------------------------------------------

// Opens the device for the next call, in place of the one before.
HIDUSB_API uint8_t UsbFinderC_OpenDevice(const char *path);
// Sends `length` bytes (at most 64) and waits up to 150 ms for one report, of which up to `length`
// bytes go to `read_buffer`; without one it only sends. No bytes or no open device do nothing.
HIDUSB_API void UsbFinderC_ReadWriteDeviceData(const uint8_t *write_buffer, uint8_t *read_buffer,
                                               uint8_t length);

// ---- Firmware -----------------------------------------------------------------------------------

// `image` is a whole firmware file in memory, of the length that its head gives; the caller has checked
// that. *count is the number of attached boot loaders that the file fits, at most the value on entry.
// Asks the boot loaders of the vendors that the program has searched for, all at the same time: a silent one
// costs 0.3 s, and any number of them 0.5 s at most.
HIDUSB_API void UsbUpgradeC_FindBootDevices(const uint8_t *image, int32_t *count);
// Starts flashing and returns: true when the file is whole and one device that it fits (in its boot
// loader or not) is attached, no other device is still being opened or asked at the end of the search, and no
// other upgrade runs. The device is followed by its USB port, and the
// upgrade has succeeded when it is there again and reports the file's version. `timeout_ms` is how long the
// boot loader may take to appear and the device to come back. The end is reported two minutes after the call
// at the latest. The image is copied. The callback has a thread of its own. The search takes as long as that
// of UsbUpgradeC_FindBootDevices.
HIDUSB_API uint8_t UsbUpgrade_Start(const uint8_t *image, UpgradeCallback_t callback, int32_t timeout_ms);

// ---- Hot-plug -----------------------------------------------------------------------------------

// Begins the one watch, in place of the one before: `callback` runs once at once and again after each
// change of the attached devices. Changes within 30 ms of each other make one call, for no longer than
// `settle_ms`. Never waits for a running callback; a replaced one is not called any more once its
// running call has returned.
HIDUSB_API void StartUsbChanged(UsbChangedCallback_t callback, int32_t settle_ms);
HIDUSB_API void StopUsbChanged(void);

#ifdef __cplusplus
}
#endif
