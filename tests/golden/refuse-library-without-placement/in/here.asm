object_0 label BGLCODE
object_end label BGLCODE
END
