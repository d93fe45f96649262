// The keys and values of the recording service's maps, and the names of its notifications.
// Every value is its own name as text; label tables turn it into something to read.
#pragma once

#include <QLatin1StringView>

#define DR_NAME(name) inline constexpr QLatin1StringView name(#name)

// Notifications. The object is the device, the burn or the erase.
DR_NAME(DRDeviceAppearedNotification);
DR_NAME(DRDeviceDisappearedNotification);
DR_NAME(DRDeviceStatusChangedNotification);
DR_NAME(DRBurnStatusChangedNotification);
DR_NAME(DREraseStatusChangedNotification);

// Status of a burn or an erase, in the notification's user information.
DR_NAME(DRStatusStateKey);               // text: one of DRStatusState…
DR_NAME(DRStatusPercentCompleteKey);     // number, 0.0 to 1.0
DR_NAME(DRStatusProgressInfoKey);        // map with the keys below
DR_NAME(DRStatusProgressCurrentKPS);     // number, KB (1,000 bytes) per second
DR_NAME(DRStatusProgressCurrentXFactor); // number, multiple of the medium's single speed
DR_NAME(DRStatusProgressElapsedTime);    // number, seconds
DR_NAME(DRStatusProgressEstimatedTime);  // number, seconds
DR_NAME(DRStatusProgressRemainingTime);  // number, seconds

DR_NAME(DRStatusStateNone);
DR_NAME(DRStatusStatePreparing);
DR_NAME(DRStatusStateSessionOpen);
DR_NAME(DRStatusStateTrackOpen);
DR_NAME(DRStatusStateTrackWrite);
DR_NAME(DRStatusStateTrackClose);
DR_NAME(DRStatusStateSessionClose);
DR_NAME(DRStatusStateVerifying);
DR_NAME(DRStatusStateFinishing);
DR_NAME(DRStatusStateErasing);
DR_NAME(DRStatusStateDone);
DR_NAME(DRStatusStateFailed);

// Status of a device, top level.
DR_NAME(DRDeviceCurrentWriteSpeedKey); // number, KB per second
DR_NAME(DRDeviceIsBusyKey);            // boolean
DR_NAME(DRDeviceIsTrayOpenKey);        // boolean
DR_NAME(DRDeviceMaximumWriteSpeedKey); // number, KB per second
DR_NAME(DRDeviceMediaInfoKey);         // map of the medium; absent without one
DR_NAME(DRDeviceMediaStateKey);        // text: one of DRDeviceMediaState…

DR_NAME(DRDeviceMediaStateMediaPresent);
DR_NAME(DRDeviceMediaStateInTransition);
DR_NAME(DRDeviceMediaStateNone);

// Status of the medium.
DR_NAME(DRDeviceBurnSpeedsKey);              // list of numbers, KB per second
DR_NAME(DRDeviceMediaBSDNameKey);            // text
DR_NAME(DRDeviceMediaBlocksFreeKey);         // number
DR_NAME(DRDeviceMediaBlocksOverwritableKey); // number
DR_NAME(DRDeviceMediaBlocksUsedKey);         // number
DR_NAME(DRDeviceMediaClassKey);              // text: one of DRDeviceMediaClass…
DR_NAME(DRDeviceMediaFreeSpaceKey);          // DRMSF
DR_NAME(DRDeviceMediaIsAppendableKey);       // boolean
DR_NAME(DRDeviceMediaIsBlankKey);            // boolean
DR_NAME(DRDeviceMediaIsErasableKey);         // boolean
DR_NAME(DRDeviceMediaIsOverwritableKey);     // boolean
DR_NAME(DRDeviceMediaIsReservedKey);         // boolean
DR_NAME(DRDeviceMediaOverwritableSpaceKey);  // DRMSF
DR_NAME(DRDeviceMediaSessionCountKey);       // number
DR_NAME(DRDeviceMediaTrackCountKey);         // number
DR_NAME(DRDeviceMediaTypeKey);               // text: one of DRDeviceMediaType…
DR_NAME(DRDeviceMediaUsedSpaceKey);          // DRMSF
DR_NAME(DRDeviceTrackRefsKey);               // list of texts, a reference a track
DR_NAME(DRDeviceTrackInfoKey);               // map from reference to a track's map

DR_NAME(DRDeviceMediaClassCD);
DR_NAME(DRDeviceMediaClassDVD);
DR_NAME(DRDeviceMediaClassBD);
DR_NAME(DRDeviceMediaClassHDDVD);
DR_NAME(DRDeviceMediaClassUnknown);

DR_NAME(DRDeviceMediaTypeCDR);
DR_NAME(DRDeviceMediaTypeCDRW);
DR_NAME(DRDeviceMediaTypeCDROM);
DR_NAME(DRDeviceMediaTypeBDR);
DR_NAME(DRDeviceMediaTypeBDRE);
DR_NAME(DRDeviceMediaTypeBDROM);
DR_NAME(DRDeviceMediaTypeDVDPlusR);
DR_NAME(DRDeviceMediaTypeDVDPlusRDoubleLayer);
DR_NAME(DRDeviceMediaTypeDVDPlusRW);
DR_NAME(DRDeviceMediaTypeDVDPlusRWDoubleLayer);
DR_NAME(DRDeviceMediaTypeDVDR);
DR_NAME(DRDeviceMediaTypeDVDRDualLayer);
DR_NAME(DRDeviceMediaTypeDVDRAM);
DR_NAME(DRDeviceMediaTypeDVDROM);
DR_NAME(DRDeviceMediaTypeDVDRW);
DR_NAME(DRDeviceMediaTypeDVDRWDualLayer);
DR_NAME(DRDeviceMediaTypeHDDVDR);
DR_NAME(DRDeviceMediaTypeHDDVDRDualLayer);
DR_NAME(DRDeviceMediaTypeHDDVDRAM);
DR_NAME(DRDeviceMediaTypeHDDVDROM);
DR_NAME(DRDeviceMediaTypeHDDVDRW);
DR_NAME(DRDeviceMediaTypeHDDVDRWDualLayer);
DR_NAME(DRDeviceMediaTypeUnknown);

// A track on the medium.
DR_NAME(DRBlockSizeKey);         // number, bytes
DR_NAME(DRBlockTypeKey);         // number: 0 audio, 8 data in mode 1 (MMC, data block type)
DR_NAME(DRFreeBlocksKey);        // number
DR_NAME(DRSessionFormatKey);     // number: 0 CD-DA or CD-ROM (MMC, disc type of the session)
DR_NAME(DRSessionNumberKey);     // number, from 1
DR_NAME(DRTrackIsEmptyKey);      // boolean
DR_NAME(DRTrackLengthKey);       // DRMSF
DR_NAME(DRTrackNumberKey);       // number, from 1
DR_NAME(DRTrackStartAddressKey); // DRMSF
DR_NAME(DRTrackTypeKey);         // text: one of DRTrackType…

DR_NAME(DRTrackTypeInvisible); // nothing written yet
DR_NAME(DRTrackTypeIncomplete);
DR_NAME(DRTrackTypeComplete);

// What a device is.
DR_NAME(DRDeviceFirmwareRevisionKey);             // text
DR_NAME(DRDeviceIORegistryEntryPathKey);          // text: where the system has the device
DR_NAME(DRDeviceLoadingMechanismCanEjectKey);     // boolean
DR_NAME(DRDeviceLoadingMechanismCanInjectKey);    // boolean
DR_NAME(DRDeviceLoadingMechanismCanOpenKey);      // boolean
DR_NAME(DRDevicePhysicalInterconnectKey);         // text
DR_NAME(DRDevicePhysicalInterconnectLocationKey); // text: one of …Location…
DR_NAME(DRDeviceProductNameKey);                  // text
DR_NAME(DRDeviceProfilePathKey);                  // text
DR_NAME(DRDeviceSerialNumberKey);                 // text
DR_NAME(DRDeviceSupportLevelKey);                 // text: one of DRDeviceSupportLevel…
DR_NAME(DRDeviceVendorNameKey);                   // text
DR_NAME(DRDeviceWriteBufferSizeKey);              // number, KB
DR_NAME(DRDeviceWriteCapabilitiesKey);            // map of the capabilities below

DR_NAME(DRDevicePhysicalInterconnectLocationInternal);
DR_NAME(DRDevicePhysicalInterconnectLocationExternal);
DR_NAME(DRDevicePhysicalInterconnectLocationUnknown);
DR_NAME(DRDeviceSupportLevelUnsupported);
DR_NAME(DRDeviceSupportLevelSupported);

DR_NAME(DRDeviceCanWriteKey);
DR_NAME(DRDeviceCanWriteCDKey);
DR_NAME(DRDeviceCanWriteCDRKey);
DR_NAME(DRDeviceCanWriteCDTextKey);
DR_NAME(DRDeviceCanWriteCDRWKey);
DR_NAME(DRDeviceCanWriteDVDKey);
DR_NAME(DRDeviceCanWriteDVDRKey);
DR_NAME(DRDeviceCanWriteDVDRDualLayerKey);
DR_NAME(DRDeviceCanWriteDVDRWKey);
DR_NAME(DRDeviceCanWriteDVDRWDualLayerKey);
DR_NAME(DRDeviceCanWriteDVDRAMKey);
DR_NAME(DRDeviceCanWriteDVDPlusRKey);
DR_NAME(DRDeviceCanWriteDVDPlusRDoubleLayerKey);
DR_NAME(DRDeviceCanWriteDVDPlusRWKey);
DR_NAME(DRDeviceCanWriteDVDPlusRWDoubleLayerKey);
DR_NAME(DRDeviceCanWriteBDKey);
DR_NAME(DRDeviceCanWriteBDRKey);
DR_NAME(DRDeviceCanWriteBDREKey);
DR_NAME(DRDeviceCanWriteHDDVDKey);
DR_NAME(DRDeviceCanWriteHDDVDRKey);
DR_NAME(DRDeviceCanWriteHDDVDRDualLayerKey);
DR_NAME(DRDeviceCanWriteHDDVDRAMKey);
DR_NAME(DRDeviceCanWriteHDDVDRWKey);
DR_NAME(DRDeviceCanWriteHDDVDRWDualLayerKey);

#undef DR_NAME
