#pragma once

#include <YBase/SmartPtrI.h>
#include <YLog/Destination.h>
#include <YLog/Destination_DiskFile.h>

namespace YLog {

/// Takes the place of a Kafka message broker. This library contains no broker client and sends nothing over a
/// network: every record is written to a disk file, as if it had been logged there.
///
/// Structured messages are shown in the language of this destination. All other settings are those of the
/// disk file, including the messages that show the call stack: `SetCallstackMessageIDs` has no effect here.
///
/// Threads: any.
///
/// Failure: as for the disk file.
class YLOG_EXPORT Destination_KafkaLog : public virtual Destination {
 public:
  /// The disk file that receives the records, for its path, its size limit and its backups.
  virtual YBase::SmartPtrI<Destination_DiskFile> GetBackupDiskFileDestination() const = 0;

 protected:
  ~Destination_KafkaLog() override;
};

/// The destination with that name. All requests for a name return the same destination; for null they return
/// null. The name is also the path of the disk file, the one that `GetDestination_DiskFile` returns for it.
///
/// Failure: as for `GetDestination_DiskFile`, but a name that is itself longer than the system's limit for
/// paths throws `YBase::ExceptionImpl<YBase::Message>`.
YLOG_EXPORT YBase::SmartPtrI<Destination_KafkaLog> GetDestination_KafkaLog(const wchar_t* name);

}  // namespace YLog
