#pragma once

#include <YBase/SmartPtrI.h>
#include <YLog/Destination.h>
#include <YLog/Destination_DiskFile.h>

namespace YLog {

/// Stands where a Kafka message broker would receive records. This library contains no broker client and
/// sends nothing over a network: every record goes to a disk file, just as if it had been logged there.
///
/// Structured messages are shown in the language of this destination. Whatever else is set belongs to the
/// disk file, the messages that show the call stack included: `SetCallstackMessageIDs` has no effect here.
///
/// Threads: any.
///
/// Failure: that of the disk file.
class YLOG_EXPORT Destination_KafkaLog : public virtual Destination {
 public:
  /// Where the records are: to be asked for its path, its size limit and its backups.
  virtual YBase::SmartPtrI<Destination_DiskFile> GetBackupDiskFileDestination() const = 0;

 protected:
  ~Destination_KafkaLog() override;
};

/// The destination of that name, shared by all who ask for it; null for a name that is null. The name is also
/// the path of its disk file, which is the one that `GetDestination_DiskFile` gives for it.
///
/// Failure: as `GetDestination_DiskFile`; a name that the system cannot take as a path throws
/// `YBase::ExceptionImpl<YBase::Message>`.
YLOG_EXPORT YBase::SmartPtrI<Destination_KafkaLog> GetDestination_KafkaLog(const wchar_t* name);

}  // namespace YLog
